#pragma once

#include <cstdint>

#include "examples/render/scene.h"
#include "platform/image_ptr.h"

namespace orvandel::evaluation {

/// A scene of the example's bracket among other parts, at a place, angle and scale of its own.
struct ClutteredScene {
  render::Size size{640, 480};
  int num_parts = 12;      ///< beside the bracket, some of them on top of it
  double noise_sigma = 2;  ///< grey levels
  std::uint32_t seed = 1;  ///< decides everything else
};

/// Draws it; the same fields give the same image on every platform.
ImagePtr Render(const ClutteredScene& scene);

/// The image to train on.
ImagePtr BracketPattern();

/// As many parts beside the bracket as make images of any size equally crowded.
int PartsForSize(render::Size size);

}  // namespace orvandel::evaluation
