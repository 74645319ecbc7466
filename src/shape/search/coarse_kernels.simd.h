// The kernel of the exhaustive search, as loops that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h).

#if defined(__SSE2__)
#include <immintrin.h>
#endif

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

// The bytes of a row of a block. Loads need no alignment; sums of votes stay below 256.

#if defined(__AVX2__)

struct RowBytes {
  __m256i bytes;
};
inline RowBytes NoBytes() {
  return {_mm256_setzero_si256()};
}
inline RowBytes AllBytes(Byte value) {
  return {_mm256_set1_epi8(static_cast<char>(value))};
}
inline void AddAt(const Byte* from, RowBytes& sums) {
  sums.bytes =
      _mm256_add_epi8(sums.bytes, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from)));
}
inline RowBytes Larger(RowBytes a, RowBytes b) {
  return {_mm256_max_epu8(a.bytes, b.bytes)};
}
/// A bit for each byte of `a` that is at least that of `b`.
inline std::uint32_t WhereNotLess(RowBytes a, RowBytes b) {
  return static_cast<std::uint32_t>(
      _mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_max_epu8(a.bytes, b.bytes), a.bytes)));
}
inline void Store(RowBytes sums, Byte* to) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), sums.bytes);
}

#elif defined(__SSE2__)

struct RowBytes {
  __m128i left;
  __m128i right;
};
inline RowBytes NoBytes() {
  return {_mm_setzero_si128(), _mm_setzero_si128()};
}
inline RowBytes AllBytes(Byte value) {
  const __m128i all = _mm_set1_epi8(static_cast<char>(value));
  return {all, all};
}
inline void AddAt(const Byte* from, RowBytes& sums) {
  const auto* const halves = reinterpret_cast<const __m128i*>(from);
  sums.left = _mm_add_epi8(sums.left, _mm_loadu_si128(halves));
  sums.right = _mm_add_epi8(sums.right, _mm_loadu_si128(halves + 1));
}
inline RowBytes Larger(RowBytes a, RowBytes b) {
  return {_mm_max_epu8(a.left, b.left), _mm_max_epu8(a.right, b.right)};
}
inline std::uint32_t WhereNotLess(RowBytes a, RowBytes b) {
  const RowBytes larger = Larger(a, b);
  const auto left =
      static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(larger.left, a.left)));
  const auto right =
      static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(larger.right, a.right)));
  return left | right << 16;
}
inline void Store(RowBytes sums, Byte* to) {
  auto* const halves = reinterpret_cast<__m128i*>(to);
  _mm_storeu_si128(halves, sums.left);
  _mm_storeu_si128(halves + 1, sums.right);
}

#else

struct RowBytes {
  Byte bytes[kBlockColumns];
};
inline RowBytes AllBytes(Byte value) {
  RowBytes all;
  for (Byte& byte : all.bytes)
    byte = value;
  return all;
}
inline RowBytes NoBytes() {
  return AllBytes(0);
}
inline void AddAt(const Byte* from, RowBytes& sums) {
  for (std::int32_t i = 0; i < kBlockColumns; ++i)
    sums.bytes[i] = static_cast<Byte>(sums.bytes[i] + from[i]);
}
inline RowBytes Larger(const RowBytes& a, const RowBytes& b) {
  RowBytes larger;
  for (std::int32_t i = 0; i < kBlockColumns; ++i)
    larger.bytes[i] = a.bytes[i] > b.bytes[i] ? a.bytes[i] : b.bytes[i];
  return larger;
}
inline std::uint32_t WhereNotLess(const RowBytes& a, const RowBytes& b) {
  std::uint32_t bits = 0;
  for (std::int32_t i = 0; i < kBlockColumns; ++i)
    bits |= (a.bytes[i] >= b.bytes[i] ? 1U : 0U) << i;
  return bits;
}
inline void Store(const RowBytes& sums, Byte* to) {
  for (std::int32_t i = 0; i < kBlockColumns; ++i)
    to[i] = sums.bytes[i];
}

#endif

/// Sums of the positions of a block.
struct BlockSums {
  RowBytes upper;
  RowBytes lower;
};

/// Adds the votes of points [begin, end).
inline void AddVotes(const Byte* origin, std::ptrdiff_t stride, const std::int32_t* offsets,
                     std::size_t begin, std::size_t end, BlockSums& sums) {
  const Byte* const below = origin + stride;
  for (std::size_t p = begin; p < end; p += kPointGroup) {
    for (std::size_t i = 0; i < kPointGroup; ++i) {
      AddAt(origin + offsets[p + i], sums.upper);
      AddAt(below + offsets[p + i], sums.lower);
    }
  }
}

/// The place of the lowest bit that is set.
inline std::int32_t LowestBit(std::uint32_t bits) {
#if defined(__GNUC__)
  return __builtin_ctz(bits);
#else
  std::int32_t i = 0;
  while ((bits >> i & 1U) == 0)
    ++i;
  return i;
#endif
}

/// Writes the positions of a row of a block whose bits are set.
inline std::size_t WriteHits(RowBytes sums, std::uint32_t bits, std::int32_t x, std::int32_t y,
                             CoarseHit* hits) {
  if (bits == 0) return 0;
  Byte votes[kBlockColumns];
  Store(sums, votes);
  std::size_t num_hits = 0;
  for (; bits != 0; bits &= bits - 1) {
    const std::int32_t i = LowestBit(bits);
    hits[num_hits].x = static_cast<std::uint16_t>(x + i);
    hits[num_hits].y = static_cast<std::uint16_t>(y);
    hits[num_hits].votes = votes[i];
    ++num_hits;
  }
  return num_hits;
}

/// A pair of rows of which the positions from column 0 and from row `first` on count.
struct RowPair {
  std::int32_t upper;
  std::int32_t first;
  std::int32_t end;
};

inline std::size_t ScanPair(const PositionRange& range, const RowPair& pair,
                            const PoseOffsets& pose, const RowBytes* limits, CoarseHit* hits) {
  const Byte* const row = range.origin + pair.upper * range.stride;
  const std::int32_t last_x = range.width > kBlockColumns ? range.width - kBlockColumns : 0;
  std::size_t num_hits = 0;
  for (std::int32_t begin = 0; begin < range.width; begin += kBlockColumns) {
    const std::int32_t x = begin < last_x ? begin : last_x;
    BlockSums sums = {NoBytes(), NoBytes()};
    bool is_alive = true;
    for (std::size_t stage = 0; stage < kStages && is_alive; ++stage) {
      AddVotes(row + x, range.stride, pose.offsets, stage == 0 ? 0 : pose.ends[stage - 1],
               pose.ends[stage], sums);
      is_alive = WhereNotLess(Larger(sums.upper, sums.lower), limits[stage]) != 0;
    }
    if (!is_alive) continue;
    // Columns of the block before have been seen; those beyond the width are none.
    std::uint32_t counts = 0xffffffffU << (begin - x);
    if (range.width < kBlockColumns) counts &= (1U << range.width) - 1U;
    const RowBytes& asked = limits[kStages - 1];
    if (pair.upper >= pair.first)
      num_hits += WriteHits(sums.upper, WhereNotLess(sums.upper, asked) & counts, x, pair.upper,
                            hits + num_hits);
    if (pair.upper + 1 < pair.end)
      num_hits += WriteHits(sums.lower, WhereNotLess(sums.lower, asked) & counts, x, pair.upper + 1,
                            hits + num_hits);
  }
  return num_hits;
}

std::size_t Scan(const PositionRange& range, const PoseOffsets& pose, const Byte* limits,
                 CoarseHit* hits, std::size_t room, std::int32_t* next_row) {
  RowBytes asked[kStages];
  for (std::size_t stage = 0; stage < kStages; ++stage)
    asked[stage] = AllBytes(limits[stage]);
  const auto most_of_pair =
      static_cast<std::size_t>(kBlockRows) * static_cast<std::size_t>(range.width);
  std::size_t num_hits = 0;
  std::int32_t y = range.first_row;
  for (; y < range.end_row && room - num_hits >= most_of_pair; y += kBlockRows) {
    // A last single row is seen with the one above it.
    const bool is_single = y + 1 == range.end_row && y > 0;
    const RowPair pair = {is_single ? y - 1 : y, y, range.end_row};
    num_hits += ScanPair(range, pair, pose, asked, hits + num_hits);
  }
  *next_row = y < range.end_row ? y : range.end_row;
  return num_hits;
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const CoarseKernels kCoarseKernels = {PlacePoints, Scan};
}

}  // namespace orvandel::shape
