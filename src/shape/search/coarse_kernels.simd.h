// The kernel of the exhaustive search, as loops that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h).

#include "shape/search/coarse_kernels.h"

namespace orvandel::shape {
namespace {

using Byte = std::uint8_t;

/// Nearest whole number; halves go up. Sums with 16384 keep five bits of fraction at least, so what is rounded
/// is the position to a thirtieth or better, the same everywhere.
inline std::int32_t Nearest(float value) {
  return static_cast<std::int32_t>(value + 16384.5F) - 16384;
}

void PlacePoints(const DirectedPoints& points, const PosePlacing& placing, std::int32_t* dx,
                 std::int32_t* dy, std::int32_t* offsets) {
  for (std::size_t i = 0; i < points.padded; ++i) {
    dx[i] = Nearest(placing.cosine * points.x[i] - placing.sine * points.y[i]);
    dy[i] = Nearest(placing.sine * points.x[i] + placing.cosine * points.y[i]);
    const std::int32_t bin =
        static_cast<std::int32_t>(points.direction[i] + placing.turn + 0.5F) & 15;
    offsets[i] = bin * placing.plane_size + dy[i] * placing.stride + dx[i];
  }
}

/// Adds the votes of points [begin, end) to the sums of a block.
inline void AddVotes(const Byte* origin, std::ptrdiff_t stride, const std::int32_t* offsets,
                     std::size_t begin, std::size_t end, Byte* sums) {
  for (std::size_t p = begin; p < end; p += kPointGroup) {
    const Byte* const v0 = origin + offsets[p];
    const Byte* const v1 = origin + offsets[p + 1];
    const Byte* const v2 = origin + offsets[p + 2];
    const Byte* const v3 = origin + offsets[p + 3];
    const Byte* const v4 = origin + offsets[p + 4];
    const Byte* const v5 = origin + offsets[p + 5];
    const Byte* const v6 = origin + offsets[p + 6];
    const Byte* const v7 = origin + offsets[p + 7];
    for (std::int32_t i = 0; i < kBlockColumns; ++i) {
      sums[i] = static_cast<Byte>(sums[i] + v0[i] + v1[i] + v2[i] + v3[i] + v4[i] + v5[i] + v6[i] +
                                  v7[i]);
    }
    Byte* const lower = sums + kBlockColumns;
    for (std::int32_t i = 0; i < kBlockColumns; ++i) {
      const std::ptrdiff_t k = stride + i;
      lower[i] = static_cast<Byte>(lower[i] + v0[k] + v1[k] + v2[k] + v3[k] + v4[k] + v5[k] +
                                   v6[k] + v7[k]);
    }
  }
}

void LimitColumns(const std::int16_t* outside, std::int32_t num_columns, std::int16_t outside_row,
                  const VoteRule& rule, Byte* limits) {
  for (std::size_t stage = 0; stage < kStages; ++stage) {
    const std::int16_t per_point = rule.per_point[stage];
    const auto full = static_cast<std::int16_t>(rule.full[stage] - per_point * outside_row);
    const std::int16_t least = rule.least[stage];
    Byte* const row = limits + static_cast<std::ptrdiff_t>(stage) * num_columns;
    for (std::int32_t x = 0; x < num_columns; ++x) {
      const auto limit = static_cast<std::int16_t>(full - per_point * outside[x]);
      const std::int16_t asked = limit > least ? limit : least;
      row[x] = static_cast<Byte>(static_cast<std::uint16_t>(asked) >> kLimitShift);
    }
  }
}

inline bool AnyReaches(const Byte* sums, const Byte* limits) {
  Byte any = 0;
  for (std::int32_t i = 0; i < kBlockColumns; ++i) {
    const Byte more = sums[i] > sums[kBlockColumns + i] ? sums[i] : sums[kBlockColumns + i];
    any = static_cast<Byte>(any | (more >= limits[i] ? 1 : 0));
  }
  return any != 0;
}

/// Positions of one row of a block that meet their limits.
inline std::size_t WriteHits(const Byte* sums, const Byte* limits, std::int32_t x, std::int32_t row,
                             CoarseHit* hits) {
  constexpr std::int32_t kGroup = 8;
  Byte meets[kBlockColumns];
  for (std::int32_t i = 0; i < kBlockColumns; ++i)
    meets[i] = sums[i] >= limits[i] ? 1 : 0;
  std::size_t num_hits = 0;
  for (std::int32_t first = 0; first < kBlockColumns; first += kGroup) {
    Byte any = 0;
    for (std::int32_t i = first; i < first + kGroup; ++i)
      any = static_cast<Byte>(any | meets[i]);
    if (any == 0) continue;
    for (std::int32_t i = first; i < first + kGroup; ++i) {
      if (meets[i] == 0) continue;
      hits[num_hits].x = static_cast<std::uint16_t>(x + i);
      hits[num_hits].row = static_cast<std::uint16_t>(row);
      hits[num_hits].votes = sums[i];
      ++num_hits;
    }
  }
  return num_hits;
}

std::size_t ScanRows(const Byte* origin, std::ptrdiff_t stride, const PoseOffsets& pose,
                     const Byte* limits, std::int32_t num_columns, CoarseHit* hits) {
  std::size_t num_hits = 0;
  for (std::int32_t x = 0; x < num_columns; x += kBlockColumns) {
    Byte sums[kBlockRows * kBlockColumns] = {};
    const Byte* asked = limits + x;
    AddVotes(origin + x, stride, pose.offsets, 0, pose.ends[0], sums);
    bool is_alive = AnyReaches(sums, asked);
    for (std::size_t stage = 1; stage < kStages && is_alive; ++stage) {
      asked += num_columns;
      AddVotes(origin + x, stride, pose.offsets, pose.ends[stage - 1], pose.ends[stage], sums);
      is_alive = AnyReaches(sums, asked);
    }
    if (!is_alive) continue;
    for (std::int32_t row = 0; row < kBlockRows; ++row)
      num_hits += WriteHits(sums + row * kBlockColumns, asked, x, row, hits + num_hits);
  }
  return num_hits;
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const CoarseKernels kCoarseKernels = {PlacePoints, LimitColumns, ScanRows};
}

}  // namespace orvandel::shape
