#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/image_view.h"

namespace orvandel {

/// Grey units of a pyramid for one grey level of an 8-bit image: means of a few pixels keep their
/// fractions, so that a contrast of some grey levels survives the halvings.
inline constexpr int kUnitsPerGrey = 16;

/// Largest value of a pyramid's pixel. Sums of a Sobel mask over such values fit 16 bits.
inline constexpr int kMaxUnits = 4095;

/// A level of a pyramid, rows without gaps.
struct GreyPlane {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<std::uint16_t> pixels;

  const std::uint16_t* Row(std::int32_t y) const {
    return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
  }
  std::uint16_t* Row(std::int32_t y) {
    return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
  }
};

/// An image, and halves, quarters ... of it. Pixel (x, y) of level l is the mean of 2^l by 2^l pixels of
/// the image; an odd last row or column is left out. Its centre lies at
///
///   (x + 0.5) * 2^l - 0.5
///
/// in the image. Memory stays allocated from one build to the next.
class Pyramid {
 public:
  /// Builds `num_levels` levels (at least one), fewer where the image becomes empty before. An image of
  /// more than 8 bits is brought to 12 by a power of two that its brightest pixel decides.
  void Build(const ImageView& image, int num_levels);

  int NumLevels() const { return num_levels_; }
  const GreyPlane& Level(int level) const { return levels_[static_cast<std::size_t>(level)]; }

 private:
  std::vector<GreyPlane> levels_;
  int num_levels_ = 0;
};

/// Deviation of the noise of an image, in pyramid units. Second differences across 3 x 3 pixels do not
/// see planes, and a low quantile of them does not see edges.
/// Method: the mask of J. Immerkaer, "Fast noise variance estimation", Computer Vision and Image
/// Understanding 64(2), 1996, with a quantile in place of the mean.
double EstimateNoise(const GreyPlane& plane);

}  // namespace orvandel
