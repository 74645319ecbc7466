#include "image/pyramid.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "image/row_kernels.h"

namespace orvandel {
namespace {

void Resize(GreyPlane& plane, std::int32_t width, std::int32_t height) {
  plane.width = width;
  plane.height = height;
  plane.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

void Halve(const GreyPlane& from, GreyPlane& to) {
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  Resize(to, from.width / 2, from.height / 2);
  for (std::int32_t y = 0; y < to.height; ++y)
    kernels.halve_rows(from.Row(2 * y), from.Row(2 * y + 1), to.width, to.Row(y));
}

}  // namespace

GreyPlane ToPlane(const UnitImage& image) {
  GreyPlane plane;
  Resize(plane, image.Width(), image.Height());
  for (std::int32_t y = 0; y < plane.height; ++y)
    image.CopyRow(y, 0, plane.width, plane.Row(y));
  return plane;
}

void Pyramid::Build(const ImageView& image, int num_levels) {
  image_ = UnitImage(image);
  num_levels_ = 1;
  if (num_levels < 2 || image_.Width() < 2 || image_.Height() < 2) return;
  const auto num_halves = static_cast<std::size_t>(num_levels) - 1;
  if (levels_.size() < num_halves) levels_.resize(num_halves);
  HalveImage();
  num_levels_ = 2;
  while (num_levels_ < num_levels) {
    const GreyPlane& finer = Level(num_levels_ - 1);
    if (finer.width < 2 || finer.height < 2) return;
    Halve(finer, levels_[static_cast<std::size_t>(num_levels_) - 1]);
    ++num_levels_;
  }
}

/// Two rows of units at a time.
void Pyramid::HalveImage() {
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  GreyPlane& half = levels_.front();
  Resize(half, image_.Width() / 2, image_.Height() / 2);
  const auto width = static_cast<std::size_t>(image_.Width());
  rows_.resize(2 * width);
  std::uint16_t* const upper = rows_.data();
  std::uint16_t* const lower = upper + width;
  for (std::int32_t y = 0; y < half.height; ++y) {
    image_.CopyRow(2 * y, 0, image_.Width(), upper);
    image_.CopyRow(2 * y + 1, 0, image_.Width(), lower);
    kernels.halve_rows(upper, lower, half.width, half.Row(y));
  }
}

double EstimateNoise(const UnitImage& image) {
  const std::int32_t width = image.Width();
  const std::int32_t height = image.Height();
  if (width < 3 || height < 3) return 0.0;
  // Some ten thousand differences tell a quantile to a percent or two; rows far apart show all of the scene.
  constexpr std::int64_t kEnough = 15000;
  const std::int64_t pixels = std::int64_t{width} * height;
  const auto row_step = static_cast<std::int32_t>(std::max<std::int64_t>(1, pixels / kEnough));
  // Differences of 8-bit images are whole grey levels; bins of that width, with the levels in their middles, let
  // the quantile fall between two of them. The last bin holds all noise beyond 16 grey levels or so.
  constexpr std::size_t kBins = 256;
  constexpr std::size_t kBinWidth = kUnitsPerGrey;
  // Several counts of each bin, because neighbours often fall into the same one, and each increment would wait for the last.
  constexpr std::size_t kLanes = 4;
  std::array<std::array<std::uint32_t, kLanes>, kBins> lanes = {};
  constexpr std::int32_t kMost = 512;
  std::array<std::uint16_t, kMost> sizes = {};
  std::array<std::array<std::uint16_t, kMost + 2>, 3> rows = {};
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  std::uint32_t total = 0;
  for (std::int32_t y = 1; y + 1 < height; y += row_step) {
    for (std::int32_t x = 0; x + 2 < width; x += kMost) {
      const std::int32_t count = std::min(width - 2 - x, kMost);
      for (std::int32_t i = 0; i < 3; ++i)
        image.CopyRow(y - 1 + i, x, count + 2, rows[static_cast<std::size_t>(i)].data());
      kernels.difference_row(rows[0].data(), rows[1].data(), rows[2].data(), count + 2,
                             sizes.data());
      for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const std::size_t bin = (sizes[i] + kBinWidth / 2) / kBinWidth;
        ++lanes[std::min(bin, kBins - 1)][i % kLanes];
      }
      total += static_cast<std::uint32_t>(count);
    }
  }
  std::array<std::uint32_t, kBins> counts = {};
  for (std::size_t bin = 0; bin < kBins; ++bin)
    counts[bin] = lanes[bin][0] + lanes[bin][1] + lanes[bin][2] + lanes[bin][3];

  // 30 of 100 values of a Gaussian lie within 0.3853 deviations; the mask adds up the noise of its
  // pixels to 6 deviations of one.
  const double wanted = 0.3 * total;
  double seen = 0.0;
  std::size_t bin = 0;
  while (bin + 1 < kBins && seen + counts[bin] < wanted)
    seen += counts[bin++];
  // Sizes: the first bin is half as wide.
  const double lower = bin == 0 ? 0.0 : (static_cast<double>(bin) - 0.5) * kBinWidth;
  const double bin_width = bin == 0 ? 0.5 * kBinWidth : 1.0 * kBinWidth;
  const double quantile = lower + bin_width * (wanted - seen) / std::max(counts[bin], 1U);
  return quantile / (6.0 * 0.3853);
}

}  // namespace orvandel
