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
inline RowBytes Loaded(const Byte* from) {
  return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from))};
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
inline RowBytes Loaded(const Byte* from) {
  const auto* const halves = reinterpret_cast<const __m128i*>(from);
  return {_mm_loadu_si128(halves), _mm_loadu_si128(halves + 1)};
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
inline RowBytes Loaded(const Byte* from) {
  RowBytes loaded;
  for (std::int32_t i = 0; i < kBlockColumns; ++i)
    loaded.bytes[i] = from[i];
  return loaded;
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

/// Adds the votes of a group of points to the sums of blocks. Many blocks for few points: so the
/// points' addresses stay in registers, and each is read from left to right.
inline void AddGroup(const Byte* origin, std::ptrdiff_t stride, const std::int32_t* offsets,
                     const BlockPlace* places, std::size_t num_blocks, Byte* sums) {
  const Byte* const p0 = origin + offsets[0];
  const Byte* const p1 = origin + offsets[1];
  const Byte* const p2 = origin + offsets[2];
  const Byte* const p3 = origin + offsets[3];
  const Byte* const p4 = origin + offsets[4];
  const Byte* const p5 = origin + offsets[5];
  const Byte* const p6 = origin + offsets[6];
  const Byte* const p7 = origin + offsets[7];
  for (std::size_t i = 0; i < num_blocks; ++i) {
    for (std::int32_t half = 0; half < kBlockRows; ++half) {
      const std::ptrdiff_t x = places[i].offset + half * stride;
      Byte* const to = sums + kBlockSums * i + static_cast<std::size_t>(half * kBlockColumns);
      RowBytes sum = Loaded(to);
      AddAt(p0 + x, sum);
      AddAt(p1 + x, sum);
      AddAt(p2 + x, sum);
      AddAt(p3 + x, sum);
      AddAt(p4 + x, sum);
      AddAt(p5 + x, sum);
      AddAt(p6 + x, sum);
      AddAt(p7 + x, sum);
      Store(sum, to);
    }
  }
}

/// Keeps the blocks in which some position reaches the limit, and moves them to the front; returns their number.
inline std::size_t KeepAlive(const RowBytes& limit, std::size_t num_blocks, BlockPlace* places,
                             Byte* sums) {
  std::size_t num_alive = 0;
  for (std::size_t i = 0; i < num_blocks; ++i) {
    const RowBytes upper = Loaded(sums + kBlockSums * i);
    const RowBytes lower = Loaded(sums + kBlockSums * i + kBlockColumns);
    places[num_alive] = places[i];
    Store(upper, sums + kBlockSums * num_alive);
    Store(lower, sums + kBlockSums * num_alive + kBlockColumns);
    num_alive += WhereNotLess(Larger(upper, lower), limit) != 0 ? 1 : 0;
  }
  return num_alive;
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

/// Lists the blocks of a range; returns their number.
inline std::size_t PlaceBlocks(const PositionRange& range, BlockPlace* places) {
  const std::int32_t last_x = range.width > kBlockColumns ? range.width - kBlockColumns : 0;
  std::size_t num_blocks = 0;
  for (std::int32_t y = range.first_row; y < range.end_row; y += kBlockRows) {
    // A last single row is seen with the one above it.
    const std::int32_t upper = y + 1 == range.end_row && y > 0 ? y - 1 : y;
    for (std::int32_t begin = 0; begin < range.width; begin += kBlockColumns) {
      const std::int32_t x = begin < last_x ? begin : last_x;
      places[num_blocks].offset = static_cast<std::int32_t>(upper * range.stride) + x;
      places[num_blocks].x = x;
      places[num_blocks].y = upper;
      ++num_blocks;
    }
  }
  return num_blocks;
}

/// The positions of a block that count: those that no block before has seen, within the range.
inline std::size_t WriteHitsOf(const PositionRange& range, const BlockPlace& place,
                               const Byte* sums, const RowBytes& limit, CoarseHit* hits) {
  const std::int32_t seen = (kBlockColumns - place.x % kBlockColumns) % kBlockColumns;
  std::uint32_t counts = 0xffffffffU << seen;
  if (range.width < kBlockColumns) counts &= (1U << range.width) - 1U;
  // The upper row of a block that ends with an odd number of rows belongs to the one before.
  const bool has_seen_upper = (place.y - range.first_row) % kBlockRows != 0;
  std::size_t num_hits = 0;
  if (!has_seen_upper) {
    const RowBytes upper = Loaded(sums);
    num_hits += WriteHits(upper, WhereNotLess(upper, limit) & counts, place.x, place.y, hits);
  }
  if (place.y + 1 < range.end_row) {
    const RowBytes lower = Loaded(sums + kBlockColumns);
    num_hits += WriteHits(lower, WhereNotLess(lower, limit) & counts, place.x, place.y + 1,
                          hits + num_hits);
  }
  return num_hits;
}

std::size_t Scan(const PositionRange& range, const PoseOffsets& pose, const Byte* limits,
                 const ScanScratch& scratch, CoarseHit* hits) {
  std::size_t num_blocks = PlaceBlocks(range, scratch.places);
  for (std::size_t i = 0; i < kBlockSums * num_blocks; i += kBlockColumns)
    Store(AllBytes(0), scratch.sums + i);
  std::size_t point = 0;
  for (std::size_t stage = 0; stage < kStages; ++stage) {
    for (; point < pose.ends[stage]; point += kPointGroup)
      AddGroup(range.origin, range.stride, pose.offsets + point, scratch.places, num_blocks,
               scratch.sums);
    num_blocks = KeepAlive(AllBytes(limits[stage]), num_blocks, scratch.places, scratch.sums);
  }
  const RowBytes asked = AllBytes(limits[kStages - 1]);
  std::size_t num_hits = 0;
  for (std::size_t i = 0; i < num_blocks; ++i)
    num_hits += WriteHitsOf(range, scratch.places[i], scratch.sums + kBlockSums * i, asked,
                            hits + num_hits);
  return num_hits;
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const CoarseKernels kCoarseKernels = {PlacePoints, Scan};
}

}  // namespace orvandel::shape
