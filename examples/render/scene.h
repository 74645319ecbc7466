#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "examples/render/coverage.h"
#include "examples/render/shape.h"
#include "platform/image_ptr.h"

namespace orvandel::render {

/// A thing to take images of.
struct Part {
  std::vector<Shape> shapes;  ///< painted in this order, part units with the origin in the middle
  Size frame;                 ///< the pattern image that shows it at scale 1, with a margin
};

/// A part where it lies in a scene.
struct Placement {
  Part part;
  Pose pose;
};

/// How an image is taken. The steps follow each other in the order of the fields; then the values
/// are rounded to 8 bits.
struct Imaging {
  double ground = 50;              ///< grey value where there is no part
  double contrast = 1;             ///< factor on differences from the ground; below 0 inverts them
  double blur_sigma_px = 0;        ///< Gaussian blur of the lens
  double light_falloff = 0;        ///< share of the light that is lost across the image, 0 to 1
  double light_direction_deg = 0;  ///< the way the light fades, clockwise from the x axis
  double noise_sigma = 0;          ///< grey levels, close to Gaussian
  std::uint64_t seed = 1;          ///< of the noise; the same seed gives the same image
};

/// The image to train on: the part unrotated at scale 1, its origin in the middle of `part.frame`.
/// Null when the size is below 1 pixel or the memory lacks; so also below.
ImagePtr RenderPattern(const Part& part, const Imaging& imaging = {});

/// An image of several parts, later ones on top of earlier ones.
///
///   RenderScene({{MetalBracket(), {.x = 320, .y = 240, .angle_deg = 30}}}, {.noise_sigma = 2})
ImagePtr RenderScene(const std::vector<Placement>& placements, const Imaging& imaging = {},
                     Size size = {});

/// The share of a placement's area that later placements cover, 0 to 1. What lies outside the
/// image does not count; a part that is wholly outside gives 0.
double OccludedShare(const std::vector<Placement>& placements, std::size_t index, Size size = {});

}  // namespace orvandel::render
