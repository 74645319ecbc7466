#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvandel {

/// Orientation class of a direction in whole degrees, 0..360: four sectors of 45 degrees centred on
/// the axes and diagonals, the same for a direction and its opposite. 0 along x, 2 along y.
inline constexpr std::array<std::uint8_t, 361> kOrientationClass = [] {
  std::array<std::uint8_t, 361> classes{};
  for (int degrees = 0; degrees <= 360; ++degrees) {
    classes[static_cast<std::size_t>(degrees)] = static_cast<std::uint8_t>((degrees + 22) / 45 % 4);
  }
  return classes;
}();

/// Step from a probed pixel to the neighbour that is probed with it.
struct NeighbourOffset {
  int row;
  int column;
};

/// By orientation class: along the edge, for the final score.
inline constexpr std::array<NeighbourOffset, 4> kNeighbourOffsets = {
    {{1, 0}, {1, 0}, {0, -1}, {0, -1}}};

/// Always a row off: quick, for the many poses of the search.
inline constexpr NeighbourOffset kNeighbourInSearch = kNeighbourOffsets[0];

/// The neighbour along the edge.
///
/// @param expected  radians, [0, 2 pi].
inline NeighbourOffset NeighbourAlongEdge(double expected) {
  constexpr double kDegreesPerRadian = 57.29577951308232;
  const auto degrees = static_cast<std::size_t>(expected * kDegreesPerRadian);
  return kNeighbourOffsets[kOrientationClass[degrees]];
}

}  // namespace orvandel
