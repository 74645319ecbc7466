#include "verify/reach_map.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>

namespace orvandel {
namespace {

/// Calls `visit` with the column of each present pixel of a row.
template <typename Visitor>
void ForEachPresent(const std::uint8_t* present, int width, Visitor visit) {
  constexpr int kWord = sizeof(std::uint64_t);
  int column = 0;
  for (; column + kWord <= width; column += kWord) {
    std::uint64_t word;
    std::memcpy(&word, present + column, sizeof(word));
    if (word == 0) continue;
    for (int i = column; i < column + kWord; ++i) {
      if (present[i] != 0) visit(i);
    }
  }
  for (; column < width; ++column) {
    if (present[column] != 0) visit(column);
  }
}

/// A whole row of a stamp at once, which compilers make one or two vector operations of.
template <std::size_t kRowSize>
void JoinRow(DirectionSet* sets, const DirectionSet* stamp) {
  std::array<DirectionSet, kRowSize> row;
  std::memcpy(row.data(), sets, sizeof(row));
  for (std::size_t i = 0; i < kRowSize; ++i)
    row[i] |= stamp[i];
  std::memcpy(sets, row.data(), sizeof(row));
}

}  // namespace

ReachMap::ReachMap(int width, int height, const ProbeRules& rules)
    : stamps_(StampsFor(rules)),
      stride_(static_cast<std::size_t>((width + 1) / 2 + 2 * kBorder)),
      num_squares_(stride_ * static_cast<std::size_t>((height + 1) / 2 + 2 * kBorder)),
      sets_(AllocateZeros<DirectionSet>(static_cast<std::int64_t>(num_squares_) + 1)) {
  static_assert(kBorder >= 16 - ReachStamps::kMostReach, "the widest stamp's row stays inside");
  if (!sets_) throw std::bad_alloc();
}

void ReachMap::Fill(const CEdgeImgComplement& edges) {
  if (stamps_->RowSize() == 8) {
    StampAll<8>(edges);
  } else {
    StampAll<16>(edges);
  }
}

template <std::size_t kRowSize>
void ReachMap::StampAll(const CEdgeImgComplement& edges) {
  const int reach = stamps_->Reach();
  for (int y = 0; y < edges.height; ++y) {
    const std::size_t first_cell =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(edges.width);
    ForEachPresent(edges.valid + first_cell, edges.width, [&](int x) {
      const double direction = edges.g[first_cell + static_cast<std::size_t>(x)];
      const DirectionSet* stamp = stamps_->Of(StoredBinOf(direction), x % 2, y % 2);
      DirectionSet* sets =
          sets_.get() + IndexOf(x, y) - static_cast<std::size_t>(reach) * (stride_ + 1);
      for (int row = 0; row <= 2 * reach; ++row, sets += stride_, stamp += kRowSize)
        JoinRow<kRowSize>(sets, stamp);
    });
  }
}

}  // namespace orvandel
