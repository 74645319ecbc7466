#include "edges/edge_sweep.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orvandel {
namespace {

constexpr int kLargestMagnitude = 252;
constexpr std::uint16_t kBeyondAnyStep = 256;

}  // namespace

GradientLimits LimitsOf(int threshold) {
  if (threshold > kLargestMagnitude) return {kLargestMagnitude, kBeyondAnyStep};
  const int least = std::max(threshold, 0);
  // Magnitude m takes a gradient of length m / 0.7, and no gradient is longer than the larger of the two
  // diagonal steps that it is made of. Less one, so that rounding cannot matter.
  const double least_step = std::floor(least / 0.7) - 1;
  return {static_cast<std::uint8_t>(least), static_cast<std::uint16_t>(std::max(least_step, 0.0))};
}

EdgeSweep::EdgeSweep(const GreyRows& image, int threshold, const GradientTables& tables)
    : image_(image),
      tables_(tables),
      kernels_(RowKernelsOf(ActiveSimdLevel())),
      limits_(LimitsOf(threshold)),
      height_(image.height),
      width_(static_cast<std::size_t>(image.width)),
      sums_(width_),
      smooth_(width_),
      magnitude_(width_),
      sector_(width_),
      peaks_(width_ + kBlock),
      columns_(width_),
      points_(width_) {
  for (const int y : {0, 1, 2})
    ReadImageRow(y);
  MakeSmoothRow(1);
}

void EdgeSweep::NextRow() {
  ++row_;
  const int next = row_ + 1;
  if (next + 1 <= height_ - 2 && next >= 1) {
    ReadImageRow(next + 2);
    MakeSmoothRow(next + 1);
  }
  MakeMagnitudeRow(next);
  if (!HasMagnitudes(row_)) {
    std::fill(peaks_.begin(), peaks_.end(), std::uint8_t{0});
    num_points_ = 0;
    return;
  }
  const RowContext row = CurrentRow();
  kernels_.peak_row(row.magnitude_above, row.magnitude, row.magnitude_below, row.sector, width_,
                    peaks_.data());
  num_points_ = CollectPeaks(peaks_.data(), width_, columns_.data());
}

std::span<const EdgePoint> EdgeSweep::LocatePoints() {
  LocateEdgePoints(Columns(), CurrentRow(), tables_, points_.data());
  return {points_.data(), num_points_};
}

RowContext EdgeSweep::CurrentRow() {
  return {magnitude_[row_ - 1], magnitude_[row_],  magnitude_[row_ + 1],
          smooth_[row_ - 1],    smooth_[row_ + 1], sector_[row_]};
}

void EdgeSweep::ReadImageRow(int y) {
  kernels_.sum_row(image_.rows[y], width_, sums_[y]);
}

void EdgeSweep::MakeSmoothRow(int y) {
  kernels_.smooth_row(sums_[y - 1], sums_[y], sums_[y + 1], width_, smooth_[y]);
}

/// Rows without a gradient count as 0.
void EdgeSweep::MakeMagnitudeRow(int y) {
  if (HasMagnitudes(y)) {
    kernels_.gradient_row(smooth_[y - 1], smooth_[y + 1], width_, limits_, magnitude_[y],
                          sector_[y]);
  } else {
    std::fill_n(magnitude_[y] - 1, width_ + 2, std::uint8_t{0});
  }
}

}  // namespace orvandel
