#include "verify/reach_map.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

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

/// Each set of a row joined with those of the `reach` squares on either side.
void SpreadAlongRow(const std::vector<DirectionSet>& padded, int reach, int count,
                    DirectionSet* out) {
  std::copy_n(padded.data(), count, out);
  for (int shift = 1; shift <= 2 * reach; ++shift) {
    const DirectionSet* shifted = padded.data() + shift;
    for (int i = 0; i < count; ++i)
      out[i] = static_cast<DirectionSet>(out[i] | shifted[i]);
  }
}

}  // namespace

ReachMap::ReachMap(const CEdgeImgComplement& edges, int radius)
    : columns_((edges.width + 1) / 2),
      rows_((edges.height + 1) / 2),
      sets_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_) + 1) {
  // A probe goes as far as the radius, and its neighbour one pixel further.
  const int reach = (radius + 2) / 2;
  const auto row_sets = static_cast<std::size_t>(columns_);
  std::vector<DirectionSet> padded(row_sets + 2 * static_cast<std::size_t>(reach));
  std::vector<DirectionSet> spread(row_sets);

  for (int row = 0; row < rows_; ++row) {
    std::fill(padded.begin(), padded.end(), DirectionSet{0});
    FillRow(edges, row, padded.data() + reach);
    SpreadAlongRow(padded, reach, columns_, spread.data());
    const int first = std::max(row - reach, 0);
    const int last = std::min(row + reach, rows_ - 1);
    for (int target = first; target <= last; ++target) {
      DirectionSet* sets = sets_.data() + static_cast<std::size_t>(target) * row_sets;
      for (std::size_t i = 0; i < row_sets; ++i)
        sets[i] = static_cast<DirectionSet>(sets[i] | spread[i]);
    }
  }
}

/// The directions in each square of a row, without reach.
void ReachMap::FillRow(const CEdgeImgComplement& edges, int row, DirectionSet* sets) const {
  for (int y = 2 * row; y < std::min(2 * row + 2, edges.height); ++y) {
    const std::size_t first_cell =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(edges.width);
    ForEachPresent(edges.valid + first_cell, edges.width, [&](int x) {
      DirectionSet& set = sets[x / 2];
      set = static_cast<DirectionSet>(
          set | SetOfDirection(edges.g[first_cell + static_cast<std::size_t>(x)]));
    });
  }
}

}  // namespace orvandel
