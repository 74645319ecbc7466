// The edge row kernels, compiled once a level (platform/simd_dispatch.h).

#include <math.h>  // <cmath> has inline functions

#if defined(__SSE2__)
#include <immintrin.h>
#endif

#include "shape/edges/edge_row_kernels.h"

namespace orvandel::shape::edges {
namespace {

template <typename Value>
inline Value SizeOf(Value value) {
  return static_cast<Value>(value < 0 ? -value : value);
}

/// Squared length of a gradient. That of 8-bit images is exact, and as a float the same as the
/// other's.
inline std::int32_t SquareOf(std::int16_t x, std::int16_t y) {
  return x * x + y * y;
}
inline float SquareOf(std::int32_t x, std::int32_t y) {
  const auto fx = static_cast<float>(x);
  const auto fy = static_cast<float>(y);
  return fx * fx + fy * fy;
}

// ------------------------------------------------------------------ candidates, as plain loops

/// Columns that the plain loops work on at once.
constexpr std::size_t kPlainBlock = 32;

/// Sums and smoothed values of a block of columns from x on.
///
/// Here and below, the neighbours to the left have pointers of their own: an unsigned i - 1 would
/// wrap.
template <typename Pixel, typename Value, typename Square>
inline void SmoothBlock(const EdgeRowOf<Pixel, Value, Square>& row, std::size_t x) {
  const Pixel* const pixels = row.pixels + x;
  const Pixel* const pixels_left = pixels - 1;
  const Value* const above = row.sums[1] + x;
  const Value* const above_2 = row.sums[2] + x;
  Value* const __restrict sums = row.sums[0] + x;
  Value* const __restrict smooth = row.smooth[0] + x;
  for (std::size_t i = 0; i < kPlainBlock; ++i) {
    const auto sum =
        static_cast<Value>((pixels_left[i] + 2 * pixels[i] + pixels[i + 1]) * kSmoothScale);
    sums[i] = sum;
    smooth[i] = static_cast<Value>(sum + 2 * above[i] + above_2[i]);
  }
}

template <typename Pixel, typename Value, typename Square>
inline bool IsAnyStrong(const EdgeRowOf<Pixel, Value, Square>& row, std::size_t x) {
  const Value* const left = row.smooth[2] + x - 1;
  const Value* const right = row.smooth[2] + x + 1;
  const Value* const above = row.smooth[3] + x;
  const Value* const below = row.smooth[1] + x;
  std::int32_t is_any = 0;
  for (std::size_t i = 0; i < kPlainBlock; ++i) {
    const Square square =
        SquareOf(static_cast<Value>(right[i] - left[i]), static_cast<Value>(below[i] - above[i]));
    is_any |= square >= row.least_square ? 1 : 0;
  }
  return is_any != 0;
}

template <typename Value>
struct GradientBlock {
  Value x[kPlainBlock];
  Value y[kPlainBlock];
  Value size[kPlainBlock];  ///< of the larger component
  Value before[kPlainBlock];
  Value after[kPlainBlock];
};

template <typename Pixel, typename Value, typename Square>
inline void DifferenceBlock(const EdgeRowOf<Pixel, Value, Square>& row, std::size_t x,
                            GradientBlock<Value>& block) {
  const Value* const centre = row.smooth[2] + x;
  const Value* const left = centre - 1;
  const Value* const left_2 = centre - 2;
  const Value* const above = row.smooth[3] + x;
  const Value* const above_2 = row.smooth[4] + x;
  const Value* const below = row.smooth[1] + x;
  const Value* const below_2 = row.smooth[0] + x;
  for (std::size_t i = 0; i < kPlainBlock; ++i) {
    const auto gx = static_cast<Value>(centre[i + 1] - left[i]);
    const auto gy = static_cast<Value>(below[i] - above[i]);
    const Value size_x = SizeOf(gx);
    const Value size_y = SizeOf(gy);
    const bool is_along_x = size_x >= size_y;
    const auto before_x = SizeOf(static_cast<Value>(centre[i] - left_2[i]));
    const auto after_x = SizeOf(static_cast<Value>(centre[i + 2] - centre[i]));
    const auto before_y = SizeOf(static_cast<Value>(centre[i] - above_2[i]));
    const auto after_y = SizeOf(static_cast<Value>(below_2[i] - centre[i]));
    block.x[i] = gx;
    block.y[i] = gy;
    block.size[i] = is_along_x ? size_x : size_y;
    block.before[i] = is_along_x ? before_x : before_y;
    block.after[i] = is_along_x ? after_x : after_y;
  }
}

template <typename Value, typename Square>
inline void MarkBlock(const GradientBlock<Value>& block, Square least_square, std::uint8_t* marks) {
  for (std::size_t i = 0; i < kPlainBlock; ++i) {
    const bool is_strong = SquareOf(block.x[i], block.y[i]) >= least_square;
    const bool is_peak = block.size[i] > block.before[i] && block.size[i] >= block.after[i];
    marks[i] = static_cast<std::uint8_t>(is_strong & is_peak);
  }
}

/// Goes through the columns of a row block by block and collects its candidates from left to right.
template <typename Pixel, typename Value, typename Square>
inline std::size_t CollectPlain(const EdgeRowOf<Pixel, Value, Square>& given) {
  const EdgeRowOf<Pixel, Value, Square> row = given;  // its own, so that no store can change it
  const std::size_t behind_last = row.width - kEdgeBorder;
  std::size_t count = 0;
  for (std::size_t x = 0; x < row.width; x += kPlainBlock) {
    SmoothBlock(row, x);
    if (!IsAnyStrong(row, x)) continue;
    GradientBlock<Value> block;
    DifferenceBlock(row, x, block);
    std::uint8_t marks[kPlainBlock];
    MarkBlock(block, row.least_square, marks);
    for (std::size_t i = x == 0 ? kEdgeBorder : 0; i < kPlainBlock && x + i < behind_last; ++i) {
      if (marks[i] == 0) continue;
      row.found.column[count] = static_cast<std::int32_t>(x + i);
      row.found.gradient_x[count] = block.x[i];
      row.found.gradient_y[count] = block.y[i];
      row.found.before[count] = block.before[i];
      row.found.after[count] = block.after[i];
      ++count;
    }
  }
  return count;
}

// ------------------------------------------------------------------ candidates, as vectors of 16-bit values

#if defined(__AVX512BW__)

using Words = __m512i;
inline Words Load(const std::int16_t* from) {
  return _mm512_loadu_si512(from);
}
inline Words LoadBytes(const std::uint8_t* from) {
  return _mm512_loadu_si512(from);
}
inline void Store(Words words, std::int16_t* to) {
  _mm512_storeu_si512(to, words);
}
inline Words AllOf(int value) {
  return _mm512_set1_epi16(static_cast<std::int16_t>(value));
}
inline Words Sum(Words a, Words b) {
  return _mm512_add_epi16(a, b);
}
inline Words Difference(Words a, Words b) {
  return _mm512_sub_epi16(a, b);
}
inline Words UpperProduct(Words a, Words b) {
  return _mm512_mulhi_epi16(a, b);
}
inline Words SizeOf(Words a) {
  return _mm512_abs_epi16(a);
}
inline Words Larger(Words a, Words b) {
  return _mm512_max_epi16(a, b);
}
/// Products of the even and the odd bytes with a weight each, added.
inline Words WeightedPairs(Words bytes, Words weights) {
  return _mm512_maddubs_epi16(bytes, weights);
}
using Mask = __mmask32;
inline Mask WhereGreater(Words a, Words b) {
  return _mm512_cmpgt_epi16_mask(a, b);
}
inline Mask Both(Mask a, Mask b) {
  return a & b;
}
inline Mask FirstOnly(Mask a, Mask b) {
  return a & ~b;
}
inline bool IsAny(Mask mask) {
  return mask != 0;
}
inline Words Chosen(Mask mask, Words if_set, Words if_clear) {
  return _mm512_mask_blend_epi16(mask, if_clear, if_set);
}
/// Bit 2 i is mask bit i of the even columns, bit 2 i + 1 that of the odd ones.
inline std::uint64_t Interleaved(Mask even, Mask odd) {
  return _mm512_movepi8_mask(
      _mm512_mask_blend_epi8(0xAAAAAAAAAAAAAAAA, _mm512_movm_epi16(even), _mm512_movm_epi16(odd)));
}

#elif defined(__AVX2__)

using Words = __m256i;
inline Words Load(const std::int16_t* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}
inline Words LoadBytes(const std::uint8_t* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}
inline void Store(Words words, std::int16_t* to) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), words);
}
inline Words AllOf(int value) {
  return _mm256_set1_epi16(static_cast<std::int16_t>(value));
}
inline Words Sum(Words a, Words b) {
  return _mm256_add_epi16(a, b);
}
inline Words Difference(Words a, Words b) {
  return _mm256_sub_epi16(a, b);
}
inline Words UpperProduct(Words a, Words b) {
  return _mm256_mulhi_epi16(a, b);
}
inline Words SizeOf(Words a) {
  return _mm256_abs_epi16(a);
}
inline Words Larger(Words a, Words b) {
  return _mm256_max_epi16(a, b);
}
inline Words WeightedPairs(Words bytes, Words weights) {
  return _mm256_maddubs_epi16(bytes, weights);
}
using Mask = __m256i;
inline Mask WhereGreater(Words a, Words b) {
  return _mm256_cmpgt_epi16(a, b);
}
inline Mask Both(Mask a, Mask b) {
  return _mm256_and_si256(a, b);
}
inline Mask FirstOnly(Mask a, Mask b) {
  return _mm256_andnot_si256(b, a);
}
inline bool IsAny(Mask mask) {
  return _mm256_movemask_epi8(mask) != 0;
}
inline Words Chosen(Mask mask, Words if_set, Words if_clear) {
  return _mm256_blendv_epi8(if_clear, if_set, mask);
}
inline std::uint64_t Interleaved(Mask even, Mask odd) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(
      _mm256_blendv_epi8(even, odd, _mm256_set1_epi16(static_cast<std::int16_t>(0xFF00)))));
}

#elif defined(__SSE2__)

using Words = __m128i;
inline Words Load(const std::int16_t* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
inline Words LoadBytes(const std::uint8_t* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
inline void Store(Words words, std::int16_t* to) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), words);
}
inline Words AllOf(int value) {
  return _mm_set1_epi16(static_cast<std::int16_t>(value));
}
inline Words Sum(Words a, Words b) {
  return _mm_add_epi16(a, b);
}
inline Words Difference(Words a, Words b) {
  return _mm_sub_epi16(a, b);
}
inline Words UpperProduct(Words a, Words b) {
  return _mm_mulhi_epi16(a, b);
}
inline Words SizeOf(Words a) {
  return _mm_max_epi16(a, _mm_sub_epi16(_mm_setzero_si128(), a));
}
inline Words Larger(Words a, Words b) {
  return _mm_max_epi16(a, b);
}
inline Words WeightedPairs(Words bytes, Words weights) {
  const __m128i even = _mm_and_si128(bytes, _mm_set1_epi16(0xFF));
  const __m128i even_weight = _mm_and_si128(weights, _mm_set1_epi16(0xFF));
  return _mm_add_epi16(_mm_mullo_epi16(even, even_weight),
                       _mm_mullo_epi16(_mm_srli_epi16(bytes, 8), _mm_srli_epi16(weights, 8)));
}
using Mask = __m128i;
inline Mask WhereGreater(Words a, Words b) {
  return _mm_cmpgt_epi16(a, b);
}
inline Mask Both(Mask a, Mask b) {
  return _mm_and_si128(a, b);
}
inline Mask FirstOnly(Mask a, Mask b) {
  return _mm_andnot_si128(b, a);
}
inline bool IsAny(Mask mask) {
  return _mm_movemask_epi8(mask) != 0;
}
inline Words Chosen(Mask mask, Words if_set, Words if_clear) {
  return _mm_or_si128(_mm_and_si128(mask, if_set), _mm_andnot_si128(mask, if_clear));
}
inline std::uint64_t Interleaved(Mask even, Mask odd) {
  return static_cast<std::uint32_t>(
      _mm_movemask_epi8(Chosen(_mm_set1_epi16(static_cast<std::int16_t>(0xFF00)), odd, even)));
}

#endif

#if defined(__SSE2__)

/// Vectors hold even and odd columns apart: sums of neighbouring bytes come out that way, and a
/// difference along the row is one of the other kind. A row of values has its even columns first.
constexpr std::size_t kPairs = sizeof(Words) / sizeof(std::int16_t);
constexpr std::size_t kBlock = 2 * kPairs;
static_assert(kEdgeBlock % kBlock == 0);

/// Pairs of columns from a row's first even column to its first odd one.
inline std::size_t OddStart(std::size_t width) {
  return (width + kEdgeBlock - 1) / kEdgeBlock * (kEdgeBlock / 2);
}

/// A weight for the even and one for the odd bytes.
inline Words Weights(int even, int odd) {
  return AllOf(even | odd << 8);
}

/// Sums along the row of the columns of one parity, from the bytes one to the left and those
/// themselves.
inline Words SumsOf(Words bytes_left, Words bytes) {
  return Sum(WeightedPairs(bytes_left, Weights(kSmoothScale, 2 * kSmoothScale)),
             WeightedPairs(bytes, Weights(0, kSmoothScale)));
}

inline void SmoothPairs(const EdgeRow8& row, Words sums, std::size_t at) {
  Store(sums, row.sums[0] + at);
  const Words above = Load(row.sums[1] + at);
  Store(Sum(Sum(sums, Load(row.sums[2] + at)), Sum(above, above)), row.smooth[0] + at);
}

struct GradientWords {
  Words x;
  Words y;
};

/// Of the columns at `at`, whose neighbours to the right, of the other parity, start at `right`.
inline GradientWords GradientOf(const EdgeRow8& row, std::size_t at, std::size_t right) {
  return {Difference(Load(row.smooth[2] + right), Load(row.smooth[2] + right - 1)),
          Difference(Load(row.smooth[1] + at), Load(row.smooth[3] + at))};
}

/// The square of the length in units of 65536, less what two truncations take away.
inline Words CoarseSquareOf(const GradientWords& gradient) {
  return Sum(UpperProduct(gradient.x, gradient.x), UpperProduct(gradient.y, gradient.y));
}

/// No gradient whose coarse square is not above this reaches the least square.
inline Words CoarseLimitOf(std::int32_t least_square) {
  return AllOf((least_square >> 16) - 2);
}

/// Smooths a row and lists the blocks that may hold strong gradients, by their first pair; returns
/// how many there are. A list instead of a branch for each block: edges come and go too often for
/// branches to be foreseen.
inline std::size_t ListStrongBlocks(const EdgeRow8& row) {
  const Words limit = CoarseLimitOf(row.least_square);
  const std::size_t odd_start = OddStart(row.width);
  std::size_t count = 0;
  for (std::size_t even = 0; 2 * even < row.width; even += kPairs) {
    const std::size_t odd = odd_start + even;
    const Words bytes = LoadBytes(row.pixels + 2 * even);
    SmoothPairs(row, SumsOf(LoadBytes(row.pixels + 2 * even - 1), bytes), even);
    SmoothPairs(row, SumsOf(bytes, LoadBytes(row.pixels + 2 * even + 1)), odd);
    const Words square = Larger(CoarseSquareOf(GradientOf(row, even, odd)),
                                CoarseSquareOf(GradientOf(row, odd, even + 1)));
    row.blocks[count] = static_cast<std::int32_t>(even);
    count += IsAny(WhereGreater(square, limit)) ? 1 : 0;
  }
  return count;
}

/// Marks the peaks of the columns at `at`, and leaves what is known of all of them in the scratch
/// arrays.
inline Mask MarkPeaks(const EdgeRow8& row, std::size_t at, std::size_t right) {
  const GradientWords gradient = GradientOf(row, at, right);
  const Words size_x = SizeOf(gradient.x);
  const Words size_y = SizeOf(gradient.y);
  const Words size = Larger(size_x, size_y);
  const Mask is_along_y = WhereGreater(size_y, size_x);
  const Words centre = Load(row.smooth[2] + at);
  const auto size_beside = [&](const std::int16_t* along_x, const std::int16_t* along_y) {
    return SizeOf(Difference(Chosen(is_along_y, Load(along_y), Load(along_x)), centre));
  };
  const Words before = size_beside(row.smooth[2] + at - 1, row.smooth[4] + at);
  const Words after = size_beside(row.smooth[2] + at + 1, row.smooth[0] + at);
  Store(gradient.x, row.scratch.gradient_x + at);
  Store(gradient.y, row.scratch.gradient_y + at);
  Store(before, row.scratch.before + at);
  Store(after, row.scratch.after + at);
  const Mask is_strong = WhereGreater(CoarseSquareOf(gradient), CoarseLimitOf(row.least_square));
  return Both(is_strong, FirstOnly(WhereGreater(size, before), WhereGreater(after, size)));
}

/// Bits of a block's columns, lowest first, that may hold points: all but those along the border.
inline std::uint64_t InsideOf(std::size_t x, std::size_t width) {
  const std::size_t behind_last = width - kEdgeBorder;
  std::uint64_t inside = x == 0 ? ~std::uint64_t{0} << kEdgeBorder : ~std::uint64_t{0};
  if (behind_last < x + kBlock) {
    inside &= behind_last > x ? (std::uint64_t{1} << (behind_last - x)) - 1 : 0;
  }
  return inside;
}

#endif

#if defined(__AVX512BW__)

/// Lists the columns whose bits are set behind the first `count` ones; returns how many there are.
inline std::size_t ListColumns(std::uint64_t bits, std::size_t x, std::size_t count,
                               std::int32_t* columns) {
  __m512i numbers =
      _mm512_add_epi32(_mm512_set1_epi32(static_cast<std::int32_t>(x)),
                       _mm512_set_epi32(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
  for (std::size_t i = 0; i < kBlock; i += 16) {
    const auto part = static_cast<__mmask16>(bits >> i & 0xFFFF);
    _mm512_storeu_si512(columns + count, _mm512_maskz_compress_epi32(part, numbers));
    numbers = _mm512_add_epi32(numbers, _mm512_set1_epi32(16));
    count += static_cast<std::size_t>(__builtin_popcount(part));
  }
  return count;
}

#elif defined(__SSE2__)

inline std::size_t ListColumns(std::uint64_t bits, std::size_t x, std::size_t count,
                               std::int32_t* columns) {
  static_assert(kBlock < 64);
  constexpr std::uint64_t kEnd = std::uint64_t{1} << kBlock;
  const auto first = static_cast<std::int32_t>(x);
  const auto num_columns = static_cast<std::size_t>(__builtin_popcountll(bits));
  // More than four are so rare that the branch is foreseen.
  for (std::size_t i = 0; i < 4; ++i) {
    columns[count + i] = first + __builtin_ctzll(bits | kEnd);
    bits &= bits - 1;
  }
  for (std::size_t i = 4; i < num_columns; ++i) {
    columns[count + i] = first + __builtin_ctzll(bits | kEnd);
    bits &= bits - 1;
  }
  return count + num_columns;
}

#endif

#if defined(__SSE2__)

/// Copies what is known of the columns listed, except of those whose gradient is too short after
/// all; returns how many are left.
inline std::size_t GatherCandidates(const EdgeRow8& row, std::size_t num_listed) {
  const std::size_t odd_start = OddStart(row.width);
  std::size_t count = 0;
  for (std::size_t i = 0; i < num_listed; ++i) {
    const std::int32_t column = row.scratch.column[i];
    const auto x = static_cast<std::size_t>(column);
    const std::size_t at = x / 2 + (x % 2 == 0 ? 0 : odd_start);
    const std::int16_t gx = row.scratch.gradient_x[at];
    const std::int16_t gy = row.scratch.gradient_y[at];
    row.found.column[count] = column;
    row.found.gradient_x[count] = gx;
    row.found.gradient_y[count] = gy;
    row.found.before[count] = row.scratch.before[at];
    row.found.after[count] = row.scratch.after[at];
    count += SquareOf(gx, gy) >= row.least_square ? 1 : 0;
  }
  return count;
}

inline std::size_t CollectWords(const EdgeRow8& given) {
  const EdgeRow8 row =
      given;  // its own, so that no store can change it and addresses stay in registers
  const std::size_t odd_start = OddStart(row.width);
  const std::size_t num_blocks = ListStrongBlocks(row);
  std::size_t num_listed = 0;
  for (std::size_t i = 0; i < num_blocks; ++i) {
    const auto even = static_cast<std::size_t>(row.blocks[i]);
    const std::size_t odd = odd_start + even;
    const Mask even_peaks = MarkPeaks(row, even, odd);
    const Mask odd_peaks = MarkPeaks(row, odd, even + 1);
    const std::uint64_t peaks = Interleaved(even_peaks, odd_peaks) & InsideOf(2 * even, row.width);
    num_listed = ListColumns(peaks, 2 * even, num_listed, row.scratch.column);
  }
  return GatherCandidates(row, num_listed);
}

#else

inline std::size_t CollectWords(const EdgeRow8& row) {
  return CollectPlain(row);
}

#endif

// ------------------------------------------------------------------ from candidates to points

/// Where the gradient is largest, in pixels from the peak's, within half a pixel: the vertex of a
/// parabola through the three values, and a correction for what an edge's profile is not. Its size
/// depends on the blur, which the bend measures; fitted to steps with a blur of 0 to 2.5 pixels at
/// all angles.
inline float OffsetOf(float slope, float bend, float relative_bend) {
  const float vertex = 0.5F * slope / bend;
  const float blurred = 1.09F * relative_bend;
  const float sharp = 6.72F - 10.0F * relative_bend;
  const float smaller = blurred < sharp ? blurred : sharp;
  const float factor = smaller > 0.0F ? smaller : 0.0F;
  return vertex + factor * vertex * (0.25F - vertex * vertex);
}

/// Arc tangent of t in 0..1, within 1e-5 radians: M. Abramowitz, I. Stegun, "Handbook of
/// Mathematical Functions", 1964, 4.4.49.
inline float ArcTan(float t) {
  const float t2 = t * t;
  return t * (0.9998660F +
              t2 * (-0.3302995F + t2 * (0.1801410F + t2 * (-0.0851330F + t2 * 0.0208351F))));
}

/// Angle between the gradient and the axis of its larger component, from the ratio of the
/// components. The differences overrate the larger one of a sharp edge by up to 4 degrees, in
/// proportion to the sine of four times the angle; how much depends on the blur, for which the bend
/// along the gradient stands, and was fitted as above.
inline float AngleToAxis(float ratio, float relative_bend) {
  const float ratio2 = ratio * ratio;
  const float widening = 1.0F + ratio2;  // of the profile along the axis, squared
  const float across = relative_bend * widening;
  const float sharpness = across < 1.0F ? across : 1.0F;
  const float sine_of_4 = 4.0F * ratio * (1.0F - ratio2) / (widening * widening);
  return ArcTan(ratio) - sharpness * (0.0334F + 0.0438F * sharpness) * sine_of_4;
}

template <typename Value>
inline void LocatePoints(const EdgeCandidatesOf<Value>& candidates, const std::int32_t* rows,
                         std::size_t count, EdgePoint* points) {
  constexpr float kPi = 3.14159265F;
  for (std::size_t i = 0; i < count; ++i) {
    const auto gx = static_cast<float>(candidates.gradient_x[i]);
    const auto gy = static_cast<float>(candidates.gradient_y[i]);
    const auto before = static_cast<float>(candidates.before[i]);
    const auto after = static_cast<float>(candidates.after[i]);
    const float size_x = fabsf(gx);
    const float size_y = fabsf(gy);
    const bool is_along_x = size_x >= size_y;
    const float larger = is_along_x ? size_x : size_y;
    const float smaller = is_along_x ? size_y : size_x;
    const float bend = (larger - before) + (larger - after);
    const float relative_bend = bend / larger;

    const float offset = OffsetOf(after - before, bend, relative_bend);
    const auto x = static_cast<float>(candidates.column[i]);
    const auto y = static_cast<float>(rows[i]);
    points[i].x = is_along_x ? x + offset : x;
    points[i].y = is_along_x ? y : y + offset;

    const float to_axis = AngleToAxis(smaller / larger, relative_bend);
    const float in_quadrant = is_along_x ? to_axis : 0.5F * kPi - to_axis;
    const float in_half = gx < 0.0F ? kPi - in_quadrant : in_quadrant;
    const float direction = gy < 0.0F ? -in_half : in_half;
    points[i].direction = direction > -kPi ? direction : kPi;  // the float pi is beyond pi
    points[i].strength = sqrtf(gx * gx + gy * gy) * (1.0F / kGradientScale);
  }
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const EdgeRowKernels kEdgeRowKernels = {{CollectWords, LocatePoints}, {CollectPlain, LocatePoints}};
}  // namespace ORVANDEL_SIMD_NAMESPACE

}  // namespace orvandel::shape::edges
