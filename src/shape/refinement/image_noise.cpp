#include "shape/refinement/image_noise.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvandel::shape {

/// Method: J. Immerkaer, "Fast noise variance estimation", Computer Vision and Image Understanding
/// 64(2), 1996, with a quantile in place of the mean, so that edges do not count.
double EstimateNoiseVariance(const FloatImage& image) {
  // A quarter of normal deviates stay below this in size; where a quarter of the image is without
  // structure, only noise decides.
  constexpr double kQuarter = 0.3186;
  constexpr double kNorm = 6.0;  // root of the sum of squared weights of (1 -2 1) x (1 -2 1)
  std::vector<float> sizes;
  for (int y = 1; y + 1 < image.height; ++y) {
    const float* const above = image.Row(y - 1);
    const float* const centre = image.Row(y);
    const float* const below = image.Row(y + 1);
    for (int x = 1; x + 1 < image.width; ++x) {
      const float corners = above[x - 1] + above[x + 1] + below[x - 1] + below[x + 1];
      const float sides = above[x] + below[x] + centre[x - 1] + centre[x + 1];
      sizes.push_back(std::abs(corners - 2.0F * sides + 4.0F * centre[x]));
    }
  }
  if (sizes.empty()) return 0.0;
  const auto quarter = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 4);
  std::nth_element(sizes.begin(), quarter, sizes.end());
  const double deviation = static_cast<double>(*quarter) / (kQuarter * kNorm);
  return deviation * deviation;
}

}  // namespace orvandel::shape
