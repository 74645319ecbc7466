#include "verify/reach_map.h"

#include <algorithm>
#include <new>

#include "base/nonzero_bytes.h"

namespace orvandel {
namespace {

/// A whole row of a stamp, which compilers make one or two vector operations of.
template <std::size_t kRowSize>
void JoinRow(DirectionSet* __restrict sets, const DirectionSet* __restrict stamp,
             DirectionSet matched) {
  for (std::size_t i = 0; i < kRowSize; ++i)
    sets[i] |= stamp[i] & matched;
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
  const std::size_t stride = stride_;
  const auto reach = static_cast<std::size_t>(stamps_->Reach());
  const std::size_t num_rows = 2 * reach + 1;
  const auto width = static_cast<std::size_t>(std::max(edges.width, 0));
  for (int y = 0; y < edges.height; ++y) {
    const std::size_t first_cell = static_cast<std::size_t>(y) * width;
    const double* directions = edges.g + first_cell;
    DirectionSet* first_sets = sets_.get() + IndexOf(0, y) - reach * (stride + 1);
    ForEachNonzero(edges.valid + first_cell, width, [&](std::size_t x) {
      const DirectionSet* stamp = stamps_->Of(static_cast<int>(x % 2), y % 2);
      const DirectionSet matched = stamps_->MatchedBy(StoredBinOf(directions[x]));
      DirectionSet* sets = first_sets + x / 2;
      for (std::size_t row = 0; row < num_rows; ++row, sets += stride, stamp += kRowSize)
        JoinRow<kRowSize>(sets, stamp, matched);
    });
  }
}

}  // namespace orvandel
