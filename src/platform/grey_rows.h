#pragma once

#include <cstdint>

namespace orvandel {

/// 8-bit grey pixels, reached by a pointer a row: rows[y][x], x right, y down. Rows need not be contiguous,
/// and do not overlap. The pixels belong to somebody else.
struct GreyRows {
  std::uint8_t* const* rows = nullptr;
  int width = 0;   ///< pixels
  int height = 0;  ///< pixels
};

}  // namespace orvandel
