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

void CopyUnits(const ImageView8& image, GreyPlane& plane) {
  static_assert(kUnitsPerGrey == 1 << 4);
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  Resize(plane, image.width, image.height);
  for (std::int32_t y = 0; y < image.height; ++y)
    kernels.widen_row(image.Row(y), image.width, plane.Row(y));
}

std::uint16_t BrightestPixel(const ImageView16& image) {
  std::uint16_t brightest = 0;
  for (std::int32_t y = 0; y < image.height; ++y) {
    const std::uint16_t* const row = image.Row(y);
    for (std::int32_t x = 0; x < image.width; ++x)
      brightest = std::max(brightest, row[x]);
  }
  return brightest;
}

void CopyUnits(const ImageView16& image, GreyPlane& plane) {
  Resize(plane, image.width, image.height);
  const int brightest = BrightestPixel(image);
  int up = 0;
  while (brightest > 0 && (brightest << (up + 1)) <= kMaxUnits)
    ++up;
  int down = 0;
  while ((brightest >> down) > kMaxUnits)
    ++down;
  for (std::int32_t y = 0; y < image.height; ++y) {
    const std::uint16_t* const from = image.Row(y);
    std::uint16_t* const to = plane.Row(y);
    for (std::int32_t x = 0; x < image.width; ++x)
      to[x] = static_cast<std::uint16_t>((from[x] << up) >> down);
  }
}

void Halve(const GreyPlane& from, GreyPlane& to) {
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  Resize(to, from.width / 2, from.height / 2);
  for (std::int32_t y = 0; y < to.height; ++y)
    kernels.halve_rows(from.Row(2 * y), from.Row(2 * y + 1), to.width, to.Row(y));
}

}  // namespace

void Pyramid::Build(const ImageView& image, int num_levels) {
  if (levels_.size() < static_cast<std::size_t>(num_levels))
    levels_.resize(static_cast<std::size_t>(num_levels));
  std::visit([this](const auto& view) { CopyUnits(view, levels_[0]); }, image);
  num_levels_ = 1;
  while (num_levels_ < num_levels) {
    const GreyPlane& finer = Level(num_levels_ - 1);
    if (finer.width < 2 || finer.height < 2) return;
    Halve(finer, levels_[static_cast<std::size_t>(num_levels_)]);
    ++num_levels_;
  }
}

double EstimateNoise(const GreyPlane& plane) {
  if (plane.width < 3 || plane.height < 3) return 0.0;
  // Some ten thousand differences tell a quantile to a percent or two; rows far apart show all of the scene.
  constexpr std::int64_t kEnough = 30000;
  const std::int64_t pixels = std::int64_t{plane.width} * plane.height;
  const auto row_step = static_cast<std::int32_t>(std::max<std::int64_t>(1, pixels / kEnough));
  // Differences of 8-bit images are whole grey levels; bins of that width, with the levels in their middles, let
  // the quantile fall between two of them. The last bin holds all noise beyond 16 grey levels or so.
  constexpr std::size_t kBins = 256;
  constexpr std::size_t kBinWidth = kUnitsPerGrey;
  std::array<std::uint32_t, kBins> counts = {};
  std::array<std::uint16_t, 512> sizes = {};
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  std::uint32_t total = 0;
  for (std::int32_t y = 1; y + 1 < plane.height; y += row_step) {
    constexpr auto kMost = static_cast<std::int32_t>(sizes.size());
    for (std::int32_t x = 0; x + 2 < plane.width; x += kMost) {
      const std::int32_t count = std::min(plane.width - 2 - x, kMost);
      kernels.difference_row(plane.Row(y - 1) + x, plane.Row(y) + x, plane.Row(y + 1) + x,
                             count + 2, sizes.data());
      for (std::int32_t i = 0; i < count; ++i) {
        const std::size_t bin = (sizes[static_cast<std::size_t>(i)] + kBinWidth / 2) / kBinWidth;
        ++counts[std::min(bin, kBins - 1)];
      }
      total += static_cast<std::uint32_t>(count);
    }
  }
  // 30 of 100 values of a Gaussian lie within 0.3853 deviations; the mask adds up the noise of its
  // pixels to 6 deviations of one.
  const double wanted = 0.3 * total;
  double seen = 0.0;
  std::size_t bin = 0;
  while (bin + 1 < kBins && seen + counts[bin] < wanted)
    seen += counts[bin++];
  // Sizes: the first bin is half as wide.
  const double lower = bin == 0 ? 0.0 : (static_cast<double>(bin) - 0.5) * kBinWidth;
  const double width = bin == 0 ? 0.5 * kBinWidth : 1.0 * kBinWidth;
  const double quantile = lower + width * (wanted - seen) / std::max(counts[bin], 1U);
  return quantile / (6.0 * 0.3853);
}

}  // namespace orvandel
