#include "verify/spread_orientation_map.h"

#include <algorithm>
#include <new>

#include "base/nonzero_bytes.h"

namespace orvandel {
namespace {

/// A whole row of a footprint, which compilers make one or two vector operations of.
template <std::size_t kRowSize>
void OrRow(OrientationMask* __restrict masks, const OrientationMask* __restrict footprint,
           OrientationMask matched) {
  for (std::size_t i = 0; i < kRowSize; ++i)
    masks[i] |= footprint[i] & matched;
}

}  // namespace

SpreadOrientationMap::SpreadOrientationMap(int width, int height, const MatchOptions& options)
    : footprints_(FootprintsFor(options)),
      stride_(static_cast<std::size_t>((width + 1) / 2 + 2 * kBorder)),
      num_squares_(stride_ * static_cast<std::size_t>((height + 1) / 2 + 2 * kBorder)),
      masks_(AllocateZeros<OrientationMask>(static_cast<std::int64_t>(num_squares_) + 1)) {
  static_assert(kBorder >= 16 - ProbeFootprints::kMostReach,
                "the widest footprint's row stays inside");
  if (!masks_) throw std::bad_alloc();
}

void SpreadOrientationMap::Fill(const CEdgeImgComplement& edges) {
  if (footprints_->RowSize() == 8) {
    SpreadAll<8>(edges);
  } else {
    SpreadAll<16>(edges);
  }
}

template <std::size_t kRowSize>
void SpreadOrientationMap::SpreadAll(const CEdgeImgComplement& edges) {
  const std::size_t stride = stride_;
  const auto reach = static_cast<std::size_t>(footprints_->Reach());
  const std::size_t num_rows = 2 * reach + 1;
  const auto width = static_cast<std::size_t>(std::max(edges.width, 0));
  for (int y = 0; y < edges.height; ++y) {
    const std::size_t first_cell = static_cast<std::size_t>(y) * width;
    const double* directions = edges.g + first_cell;
    OrientationMask* first_masks = masks_.get() + IndexOf(0, y) - reach * (stride + 1);
    ForEachNonzero(edges.valid + first_cell, width, [&](std::size_t x) {
      const OrientationMask* footprint = footprints_->Of(static_cast<int>(x % 2), y % 2);
      const OrientationMask matched = footprints_->MatchedBy(StoredBinOf(directions[x]));
      OrientationMask* masks = first_masks + x / 2;
      for (std::size_t row = 0; row < num_rows; ++row, masks += stride, footprint += kRowSize)
        OrRow<kRowSize>(masks, footprint, matched);
    });
  }
}

}  // namespace orvandel
