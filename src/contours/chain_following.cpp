#include "contours/chain_following.h"

#include <array>
#include <bit>

namespace orvandel {
namespace {

/// Directions 0..7 clockwise on the screen, from +x.
constexpr std::array<int, 8> kStepX = {1, 1, 0, -1, -1, -1, 0, 1};
constexpr std::array<int, 8> kStepY = {0, 1, 1, 1, 0, -1, -1, -1};

/// A pass searches from its first pixel as if it had come from above.
constexpr unsigned kFirstDirection = 2;

/// Neighbours are tried from a left turn round to the right: 6, 7, 0, 1, 2, 3 and 4 eighths from the last
/// direction. The eighth one, 5, is not tried.
constexpr unsigned kFirstTurn = 6;
constexpr unsigned kTriedTurns = 0x7F;

unsigned Bit(std::uint8_t pixel, int direction) {
  return static_cast<unsigned>(pixel != 0) << direction;
}

}  // namespace

ChainFollower::ChainFollower(const GreyRows& edge_map)
    : rows_(edge_map.rows), width_(edge_map.width), height_(edge_map.height) {}

/// The eight neighbours that are set, a bit a direction: all at once, since which of them comes first is
/// as good as random and a guess at it costs more than looking.
inline unsigned ChainFollower::Neighbours(ChainPixel pixel) const {
  const int column = pixel.column;
  const int row = pixel.row;
  const bool inside = column >= 1 && column < width_ - 1 && row >= 1 && row < height_ - 1;
  if (!inside) return NeighboursAtBorder(pixel);
  const std::uint8_t* above = rows_[row - 1] + column;
  const std::uint8_t* centre = rows_[row] + column;
  const std::uint8_t* below = rows_[row + 1] + column;
  return Bit(centre[1], 0) | Bit(below[1], 1) | Bit(below[0], 2) | Bit(below[-1], 3) |
         Bit(centre[-1], 4) | Bit(above[-1], 5) | Bit(above[0], 6) | Bit(above[1], 7);
}

void ChainFollower::FollowFrom(ChainPixel pixel, std::vector<ChainPixel>& taken) {
  unsigned direction = kFirstDirection;
  for (;;) {
    const auto neighbours = static_cast<std::uint8_t>(Neighbours(pixel));
    const unsigned first = (direction + kFirstTurn) % 8;
    const unsigned tried = std::rotr(neighbours, static_cast<int>(first)) & kTriedTurns;
    if (tried == 0) return;

    direction = (first + static_cast<unsigned>(std::countr_zero(tried))) % 8;
    pixel.column = static_cast<std::uint16_t>(pixel.column + kStepX[direction]);
    pixel.row = static_cast<std::uint16_t>(pixel.row + kStepY[direction]);
    rows_[pixel.row][pixel.column] = 0;
    taken.push_back(pixel);
  }
}

unsigned ChainFollower::NeighboursAtBorder(ChainPixel pixel) const {
  unsigned bits = 0;
  for (unsigned d = 0; d < 8; ++d)
    bits |= static_cast<unsigned>(IsSet(pixel.column + kStepX[d], pixel.row + kStepY[d])) << d;
  return bits;
}

bool ChainFollower::IsSet(int column, int row) const {
  return column >= 0 && column < width_ && row >= 0 && row < height_ && rows_[row][column] != 0;
}

}  // namespace orvandel
