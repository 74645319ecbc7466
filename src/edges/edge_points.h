#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "edges/gradient_tables.h"

namespace orvandel {

/// An edge point of a row: its column, its direction code (a full turn in 256 steps), and its sub-pixel
/// offsets in 1/256 pixel; 127 means no shift along that axis.
struct EdgePoint {
  std::int32_t column;
  std::int32_t direction;
  std::int32_t sub_x;
  std::int32_t sub_y;
};

/// What places the edge points of a row; each pointer to column 0 of a padded row.
struct RowContext {
  const std::uint8_t* magnitude_above;
  const std::uint8_t* magnitude;
  const std::uint8_t* magnitude_below;
  const std::uint8_t* smooth_above;
  const std::uint8_t* smooth_below;
  const std::uint8_t* sector;
};

/// Columns of the bytes that are set, in rising order.
///
/// @param peaks    `width` bytes.
/// @param columns  receives them; has room for `width`.
/// @return  their number.
std::size_t CollectPeaks(const std::uint8_t* peaks, std::size_t width, std::uint16_t* columns);

/// Places each peak of a row at the vertex of the parabola through its magnitude and its two
/// neighbours' across the edge.
///
/// @param points  as many as columns.
void LocateEdgePoints(std::span<const std::uint16_t> columns, const RowContext& row,
                      const GradientTables& tables, EdgePoint* points);

}  // namespace orvandel
