#pragma once

#include <cstdint>
#include <vector>

#include "edges/gradient_tables.h"
#include "orvandel/classic/imgutil_i.h"

namespace orvandel::plain {

/// A pixel whose gradient magnitude reaches the threshold.
struct EdgeCandidate {
  std::uint16_t x;         ///< column
  std::uint16_t y;         ///< row
  std::uint8_t direction;  ///< gradient direction code, a full turn in 256 steps
  std::uint8_t sector;     ///< 0 across x, 2 across y, 1 and 3 across the diagonals
};

/// Smooths an image with a 3 x 3 box, takes its gradient from the four diagonal neighbours and
/// collects the pixels whose magnitude reaches the threshold, row by row.
///
/// @param image      8-bit grey, 5 rows and more; not changed. The two outermost rows and columns
///                   give no candidates.
/// @param threshold  least magnitude, on the scale of the magnitude table.
/// @param magnitude  of the image's size and all 0; receives the candidates' magnitudes.
std::vector<EdgeCandidate> FindEdgeCandidates(const tImage& image, int threshold,
                                              const GradientTables& tables, tImage& magnitude);

}  // namespace orvandel::plain
