#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "base/rounding.h"
#include "examples/render/noise.h"
#include "examples/render/parts.h"
#include "examples/render/scene.h"
#include "image/image_view.h"
#include "shape/refinement/refine_pose.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape::test {

/// An image of pixels of its own.
struct RenderedImage {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> grey;

  ImageView8 View() const { return {grey.data(), width, height, width}; }
};

/// How a camera takes an image: optics blur first, then each pixel averages over its area, then there is
/// noise and rounding.
struct Camera {
  double optics_px = 0.7;  ///< deviation of the optics' blur; with less, edges alias
  double contrast = 1.0;
  double noise = 0.6;  ///< deviation, grey levels
  std::uint32_t seed = 1;
};

/// What falls on a camera's pixels, before noise and rounding.
struct Exposure {
  int width = 0;
  int height = 0;
  std::vector<double> grey;
};

/// Draws a part fourfold, blurred, and averages over pixels.
inline Exposure Expose(const render::Part& part, const render::Pose& pose, render::Size size,
                       const Camera& camera = {}) {
  constexpr int kFold = 4;
  constexpr double kOffset = 0.5 * (kFold - 1);  // centre of a pixel, in fine pixels from its first
  const render::Pose fine_pose = {kFold * pose.x + kOffset, kFold * pose.y + kOffset,
                                  pose.angle_deg, kFold * pose.scale};
  const ImagePtr fine = render::RenderScene(
      {{part, fine_pose}}, {.contrast = camera.contrast, .blur_sigma_px = kFold * camera.optics_px},
      {kFold * size.width, kFold * size.height});
  Exposure exposure = {size.width, size.height, {}};
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      double sum = 0.0;
      for (int j = 0; j < kFold; ++j) {
        for (int i = 0; i < kFold; ++i)
          sum += fine->row[kFold * y + j][kFold * x + i];
      }
      exposure.grey.push_back(sum / (kFold * kFold));
    }
  }
  return exposure;
}

/// Adds noise and rounds.
inline RenderedImage Develop(const Exposure& exposure, double noise, std::uint32_t seed) {
  render::RandomSource random(seed);
  RenderedImage image = {exposure.width, exposure.height, {}};
  for (const double grey : exposure.grey) {
    const double noisy = grey + noise * random.NearlyNormal();
    image.grey.push_back(static_cast<std::uint8_t>(std::clamp(noisy + 0.5, 0.0, 255.0)));
  }
  return image;
}

inline RenderedImage TakeImage(const render::Part& part, const render::Pose& pose,
                               render::Size size, const Camera& camera = {}) {
  return Develop(Expose(part, pose, size, camera), camera.noise, camera.seed);
}

/// The pattern image of a part, its origin in the middle.
inline RenderedImage TakePatternImage(const render::Part& part, const Camera& camera = {}) {
  const render::Pose middle = {0.5 * (part.frame.width - 1), 0.5 * (part.frame.height - 1), 0.0,
                               1.0};
  return TakeImage(part, middle, part.frame, camera);
}

/// The pose of a part in a rendered image, as the refinement says it.
inline Similarity TruthOf(const render::Pose& pose) {
  return {pose.x, pose.y, pose.angle_deg * (kPi / 180.0), pose.scale};
}

/// Mean distance of the corners of a w x h pattern, carried by two poses.
inline double CornerError(const Similarity& a, const Similarity& b, int width, int height) {
  double sum = 0.0;
  for (const double x : {-0.5 * width, 0.5 * width}) {
    for (const double y : {-0.5 * height, 0.5 * height}) {
      const Point difference = a * Point{x, y} - b * Point{x, y};
      sum += std::sqrt(Dot(difference, difference)) / 4.0;
    }
  }
  return sum;
}

/// A pose near another: each of its parameters is off by at most the given size.
inline Similarity Near(const Similarity& pose, double shift_px, double angle, double share,
                       orvandel::test::UniformRandom& random) {
  return {pose.x + random.Real(-shift_px, shift_px), pose.y + random.Real(-shift_px, shift_px),
          pose.angle + random.Real(-angle, angle), pose.scale * (1.0 + random.Real(-share, share))};
}

}  // namespace orvandel::shape::test
