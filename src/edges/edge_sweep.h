#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "edges/edge_points.h"
#include "edges/gradient_tables.h"
#include "edges/row_buffers.h"
#include "edges/row_kernels.h"
#include "platform/grey_rows.h"

namespace orvandel {

/// One pass over the rows of an image, from grey values to edge points, which holds only the last few rows
/// of every intermediate: 3 x 3 box smoothing, gradient from the four diagonal neighbours, threshold,
/// and non-maximum suppression across the edge.
///
/// A row of edges is ready once the image has been read three rows further, so the caller may write it
/// over the image.
class EdgeSweep {
 public:
  /// @param image      5 pixels and more each way; its pixels outlive the sweep.
  /// @param threshold  least magnitude of an edge point, on the scale of the magnitude table.
  /// @throws std::bad_alloc
  EdgeSweep(const GreyRows& image, int threshold, const GradientTables& tables);

  /// Goes to the next row; called `height` times at most, for rows 0, 1, 2, ... in turn.
  void NextRow();

  /// 255 on the edge points of the row, 0 elsewhere; `width` bytes, until the next call.
  const std::uint8_t* Peaks() const { return peaks_.data(); }

  /// Columns of the row's edge points, from left to right; until the next call.
  std::span<const std::uint16_t> Columns() const { return {columns_.data(), num_points_}; }

  /// The row's edge points in the same order; until the next call.
  std::span<const EdgePoint> LocatePoints();

 private:
  void ReadImageRow(int y);
  void MakeSmoothRow(int y);
  void MakeMagnitudeRow(int y);
  RowContext CurrentRow();
  bool HasMagnitudes(int y) const { return y >= 2 && y <= height_ - 3; }

  GreyRows image_;
  const GradientTables& tables_;
  const RowKernels& kernels_;
  GradientLimits limits_;
  int height_;
  std::size_t width_;
  int row_ = -1;

  RowRing<std::uint16_t> sums_;
  RowRing<std::uint8_t> smooth_;
  RowRing<std::uint8_t> magnitude_;
  RowRing<std::uint8_t> sector_;
  std::vector<std::uint8_t> peaks_;
  std::vector<std::uint16_t> columns_;
  std::vector<EdgePoint> points_;
  std::size_t num_points_ = 0;
};

/// The limits that keep exactly the gradients whose magnitude reaches a threshold.
GradientLimits LimitsOf(int threshold);

}  // namespace orvandel
