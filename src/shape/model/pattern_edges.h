#pragma once

#include <cstddef>
#include <vector>

#include "image/image_view.h"
#include "shape/model/shape_model.h"

namespace orvandel::shape {

/// Grey values of a pattern made smaller, in pyramid units, rows without gaps.
struct FactorImage {
  double factor = 1.0;
  int width = 0;
  int height = 0;
  Point first;  ///< place of pixel (0, 0), pattern pixels from the pattern's centre
  std::vector<float> grey;

  double At(int x, int y) const {
    return static_cast<double>(grey[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(x)]);
  }
};

/// The pattern seen `factor` times smaller (at least 1): each pixel is the mean over a square of that
/// side, as the pixels of a pyramid are. The image stays in the middle.
FactorImage ShrinkPattern(const PatternImage& pattern, double factor);

/// The edge points of a pattern at one factor, to a fraction of a pixel, in image order: peaks of the
/// Sobel gradient along its own direction, in connected stretches that are strong somewhere. A point counts
/// where `mask` is not 0 (or empty).
std::vector<EdgePoint> FindPatternEdges(const FactorImage& image, const PatternImage& pattern,
                                        const ImageView8& mask, double noise);

}  // namespace orvandel::shape
