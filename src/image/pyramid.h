#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/image_view.h"
#include "image/unit_image.h"

namespace orvandel {

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

/// Side of a level's pixels, pixels of the image.
inline double PixelsOf(int level) {
  return static_cast<double>(1 << level);
}

/// The whole of an image in units.
GreyPlane ToPlane(const UnitImage& image);

/// An image, and halves, quarters ... of it. Pixel (x, y) of level l is the mean of 2^l by 2^l pixels of
/// the image; an odd last row or column is left out. Its centre lies at
///
///   (x + 0.5) * 2^l - 0.5
///
/// in the image. Memory stays allocated from one build to the next.
class Pyramid {
 public:
  /// Builds `num_levels` levels with the image itself (at least one), fewer where it becomes empty before. The view is kept.
  void Build(const ImageView& image, int num_levels);

  int NumLevels() const { return num_levels_; }

  /// Level 0.
  const UnitImage& Image() const { return image_; }
  /// A level from 1 on.
  const GreyPlane& Level(int level) const { return levels_[static_cast<std::size_t>(level) - 1]; }

 private:
  void HalveImage();

  UnitImage image_;
  std::vector<GreyPlane> levels_;
  std::vector<std::uint16_t> rows_;
  int num_levels_ = 0;
};

/// Deviation of the noise of an image, in pyramid units. Second differences across 3 x 3 pixels do not
/// see planes, and a low quantile of them does not see edges.
/// Method: the mask of J. Immerkaer, "Fast noise variance estimation", Computer Vision and Image
/// Understanding 64(2), 1996, with a quantile in place of the mean.
double EstimateNoise(const UnitImage& image);

}  // namespace orvandel
