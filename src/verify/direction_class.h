#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvandel {

/// Orientation class of a direction in whole degrees, 0..360: four sectors of 45 degrees centred on
/// the axes and diagonals, the same for a direction and its opposite. 0 along x, 2 along y.
inline constexpr std::array<std::uint8_t, 361> kDirectionClass = [] {
  std::array<std::uint8_t, 361> classes{};
  for (int degrees = 0; degrees <= 360; ++degrees) {
    classes[static_cast<std::size_t>(degrees)] = static_cast<std::uint8_t>((degrees + 22) / 45 % 4);
  }
  return classes;
}();

/// Step from a probed pixel to the neighbour that is probed with it, by direction class.
struct FlankOffset {
  int row;
  int column;
};
inline constexpr std::array<FlankOffset, 4> kFlankOffsets = {{{1, 0}, {1, 0}, {0, -1}, {0, -1}}};

}  // namespace orvandel
