#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "edges/edge_points.h"
#include "edges/edge_sweep.h"
#include "edges/row_kernels.h"
#include "tests/support/grids.h"

// The row kernels run on whole images and on single neighbourhoods, for tests that look at one step.
namespace orvandel::test {

/// A row of bytes with the padding that the kernels want.
class PaddedRow {
 public:
  explicit PaddedRow(std::size_t width) : bytes_(width + 2 * kRowPadding + kBlock) {}
  std::uint8_t* data() { return bytes_.data() + kRowPadding; }

 private:
  std::vector<std::uint8_t> bytes_;
};

inline PaddedRow PaddedRowOf(const std::vector<int>& values) {
  PaddedRow row(values.size());
  for (std::size_t i = 0; i < values.size(); ++i)
    row.data()[i] = static_cast<std::uint8_t>(values[i]);
  return row;
}

inline std::vector<PaddedRow> PaddedRows(int width, int height) {
  return std::vector<PaddedRow>(static_cast<std::size_t>(height),
                                PaddedRow(static_cast<std::size_t>(width)));
}

/// A pixel whose magnitude reaches the threshold and is not 0.
struct EdgeCandidate {
  int x = 0;
  int y = 0;
  int direction = 0;
  int sector = 0;
};

struct EdgeCandidates {
  std::vector<EdgeCandidate> list;  // row by row
  Grid magnitude;                   // 0 where the pixel is no candidate

  const EdgeCandidate* At(int x, int y) const {
    for (const EdgeCandidate& c : list) {
      if (c.x == x && c.y == y) return &c;
    }
    return nullptr;
  }
};

/// The box-smoothed rows 1 to height - 2 of an image.
inline std::vector<PaddedRow> SmoothedRows(const tImage& image, const RowKernels& kernels) {
  const auto width = static_cast<std::size_t>(image.width);
  const std::size_t num_sums = width + 2 * kRowPadding + kBlock;
  std::vector<std::vector<std::uint16_t>> sums(static_cast<std::size_t>(image.height),
                                               std::vector<std::uint16_t>(num_sums));
  const auto sum_row = [&](int y) {
    return sums[static_cast<std::size_t>(y)].data() + kRowPadding;
  };
  for (int y = 0; y < image.height; ++y)
    kernels.sum_row(image.row[y], width, sum_row(y));
  std::vector<PaddedRow> smooth = PaddedRows(image.width, image.height);
  for (int y = 1; y <= image.height - 2; ++y) {
    kernels.smooth_row(sum_row(y - 1), sum_row(y), sum_row(y + 1), width,
                       smooth[static_cast<std::size_t>(y)].data());
  }
  return smooth;
}

/// The direction code at a column, between two smoothed rows: that of a peak made up for the purpose.
inline int DirectionCodeAt(std::size_t x, std::uint8_t* above, std::uint8_t* below) {
  PaddedRow flat(x + 2);
  PaddedRow peak(x + 2);
  PaddedRow sector(x + 2);
  peak.data()[x] = 1;
  const RowContext row = {flat.data(), peak.data(), flat.data(), above, below, sector.data()};
  const auto column = static_cast<std::uint16_t>(x);
  EdgePoint point;
  LocateEdgePoints({&column, 1}, row, *AcquireGradientTables(), &point);
  return point.direction;
}

/// What the kernels make of an image before they look for peaks.
inline EdgeCandidates FindEdgeCandidates(const tImage& image, int threshold,
                                         const RowKernels& kernels) {
  EdgeCandidates found;
  found.magnitude = MakeGrid(image.width, image.height);
  if (image.width < 5) return found;  // the detector does not come to rows as short as that
  const auto width = static_cast<std::size_t>(image.width);
  std::vector<PaddedRow> smooth = SmoothedRows(image, kernels);
  PaddedRow magnitude(width);
  PaddedRow sector(width);
  for (int y = 2; y <= image.height - 3; ++y) {
    std::uint8_t* above = smooth[static_cast<std::size_t>(y - 1)].data();
    std::uint8_t* below = smooth[static_cast<std::size_t>(y + 1)].data();
    kernels.gradient_row(above, below, width, LimitsOf(threshold), magnitude.data(), sector.data());
    for (std::size_t x = 0; x < width; ++x) {
      if (magnitude.data()[x] == 0) continue;
      const int column = static_cast<int>(x);
      At(found.magnitude, column, y) = magnitude.data()[x];
      found.list.push_back({column, y, DirectionCodeAt(x, above, below), sector.data()[x]});
    }
  }
  return found;
}

/// The edge point in the middle of a 3 x 3 neighbourhood of magnitudes, if the middle is a peak.
inline std::optional<EdgePoint> LocatePeak(int sector, const Grid& neighbourhood,
                                           const RowKernels& kernels) {
  std::array<PaddedRow, 3> rows = {PaddedRowOf(neighbourhood[0]), PaddedRowOf(neighbourhood[1]),
                                   PaddedRowOf(neighbourhood[2])};
  PaddedRow sectors = PaddedRowOf({sector, sector, sector});
  PaddedRow flat(3);
  PaddedRow peaks(3);
  kernels.peak_row(rows[0].data(), rows[1].data(), rows[2].data(), sectors.data(), 3, peaks.data());
  if (peaks.data()[1] == 0) return std::nullopt;

  const RowContext row = {rows[0].data(), rows[1].data(), rows[2].data(),
                          flat.data(),    flat.data(),    sectors.data()};
  const std::uint16_t column = 1;
  EdgePoint point;
  LocateEdgePoints({&column, 1}, row, *AcquireGradientTables(), &point);
  return point;
}

}  // namespace orvandel::test
