#pragma once

#include <cstdint>
#include <vector>

#include "tests/plain/edge_candidates.h"

namespace orvandel::plain {

/// An edge pixel with its sub-pixel offsets in 1/256 pixel; 127 means no shift along that axis.
struct EdgePoint {
  std::uint16_t x;
  std::uint16_t y;
  std::uint8_t direction;
  std::uint8_t sub_x;
  std::uint8_t sub_y;
};

/// Keeps the candidates that are a peak of the magnitude across the edge, and places each at the
/// vertex of the parabola through its magnitude and its two neighbours'. A candidate goes when the
/// parabola opens upwards or its vertex lies more than half a pixel away.
///
/// @param magnitude  the candidates' magnitudes, 0 elsewhere.
std::vector<EdgePoint> LocateEdgePoints(const std::vector<EdgeCandidate>& candidates,
                                        const tImage& magnitude);

}  // namespace orvandel::plain
