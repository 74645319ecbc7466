// The row kernels, as loops that compilers turn into vector code; compiled once a level (platform/simd_dispatch.h).

#include <math.h>  // <cmath> has inline functions

#include "edges/row_kernels.h"

namespace orvandel {
namespace {

using Byte = std::uint8_t;
using Word = std::uint16_t;
using Signed = std::int16_t;

/// n / 9 for n up to 2295, nine white pixels.
inline Word Ninth(Word n) {
  return static_cast<Word>((static_cast<std::uint32_t>(n) * 7282u) >> 16);
}

void SumRow(const Byte* row, std::size_t width, Word* sums) {
  sums[0] = static_cast<Word>(2 * row[0] + row[1]);
  for (std::size_t x = 1; x + 1 < width; ++x) {
    sums[x] = static_cast<Word>(row[x - 1] + row[x] + row[x + 1]);
  }
  sums[width - 1] = static_cast<Word>(2 * row[width - 1] + row[width - 2]);
}

void SmoothRow(const Word* above, const Word* centre, const Word* below, std::size_t width,
               Byte* smooth) {
  for (std::size_t begin = 0; begin < width; begin += kBlock) {
    for (std::size_t x = begin; x < begin + kBlock; ++x) {
      smooth[x] = static_cast<Byte>(Ninth(static_cast<Word>(above[x] + centre[x] + below[x])));
    }
  }
}

inline Byte Distance(Byte a, Byte b) {
  return static_cast<Byte>(a > b ? a - b : b - a);
}

/// The largest grey step across the diagonals of a block. No gradient is longer: its two components are
/// half the sum and half the difference of the diagonal steps.
///
/// Here and below, the neighbours to the left have pointers of their own: an unsigned i - 1 would wrap.
inline Byte LargestStep(const Byte* above, const Byte* below) {
  const Byte* const above_left = above - 1;
  const Byte* const below_left = below - 1;
  Byte largest = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const Byte falling = Distance(above_left[i], below[i + 1]);
    const Byte rising = Distance(above[i + 1], below_left[i]);
    const Byte step = falling > rising ? falling : rising;
    largest = largest > step ? largest : step;
  }
  return largest;
}

/// The gradients of a block: both components without their signs, and what the signs say.
struct GradientBlock {
  Word down[kBlock];
  Word across[kBlock];
  Byte diagonal[kBlock];     ///< the diagonal sector that the signs point to
  Byte falls_short[kBlock];  ///< 1 for the lengths 90, 170 and 180, and some others beyond 255
};

void DifferenceBlock(const Byte* above, const Byte* below, GradientBlock& block) {
  const Byte* const above_left = above - 1;
  const Byte* const below_left = below - 1;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const auto falling = static_cast<Signed>(above_left[i] - below[i + 1]);
    const auto rising = static_cast<Signed>(above[i + 1] - below_left[i]);
    const auto down = static_cast<Signed>(rising + falling);
    const auto across = static_cast<Signed>(rising - falling);
    // Halved toward zero.
    const auto a = static_cast<Word>(static_cast<Word>(down < 0 ? -down : down) >> 1);
    const auto b = static_cast<Word>(static_cast<Word>(across < 0 ? -across : across) >> 1);
    const auto square = static_cast<Word>(a * a + b * b);  // modulo 2^16
    block.down[i] = a;
    block.across[i] = b;
    block.diagonal[i] = static_cast<Signed>(down ^ across) < 0 ? Byte{3} : Byte{1};
    block.falls_short[i] =
        static_cast<Byte>((square == 90 * 90) | (square == 170 * 170) | (square == 180 * 180));
  }
}

/// 0.7 times the length of (a, b), rounded down. 49 (a^2 + b^2) is a whole number below 2^24, so that its
/// root reaches 10 m exactly when the magnitude reaches m; a tenth of the root keeps that.
inline Byte ExactMagnitude(Word a, Word b) {
  const std::int32_t square = static_cast<Word>(a * a) + static_cast<Word>(b * b);
  const float root = sqrtf(49.0f * static_cast<float>(square));
  return static_cast<Byte>(static_cast<std::int32_t>(root * 0.1f));
}

void MagnitudeBlock(const GradientBlock& block, Byte threshold, Byte* magnitude) {
  for (std::size_t i = 0; i < kBlock; ++i)
    magnitude[i] = ExactMagnitude(block.down[i], block.across[i]);
  for (std::size_t i = 0; i < kBlock; ++i) {
    // 0.7 is no binary fraction: three of the lengths whose product with it is whole come out below it in
    // the magnitude table. What else is marked has a magnitude beyond 128.
    const Byte less = magnitude[i] < 128 ? block.falls_short[i] : Byte{0};
    const auto m = static_cast<Byte>(magnitude[i] - less);
    magnitude[i] = m >= threshold ? m : Byte{0};
  }
}

/// Sectors are bounded by the tangent of 22.5 degrees. 70 / 169 lies so close to it that no fraction of
/// whole numbers up to 127 falls between the two.
void SectorBlock(const GradientBlock& block, Byte* sector) {
  for (std::size_t i = 0; i < kBlock; ++i) {
    const auto p = static_cast<Word>(block.across[i] >> 1);
    const auto q = static_cast<Word>(block.down[i] >> 1);
    const bool is_flat = static_cast<Word>(169 * q) <= static_cast<Word>(70 * p);
    const bool is_steep = static_cast<Word>(169 * p) <= static_cast<Word>(70 * q);
    const Byte steep = is_steep ? Byte{2} : block.diagonal[i];
    sector[i] = is_flat ? Byte{0} : steep;
  }
}

inline void ClearBlock(Byte* block) {
  for (std::size_t i = 0; i < kBlock; ++i)
    block[i] = 0;
}

void GradientRow(const Byte* above, const Byte* below, std::size_t width, GradientLimits limits,
                 Byte* magnitude, Byte* sector) {
  for (std::size_t x = 0; x < width; x += kBlock) {
    if (LargestStep(above + x, below + x) < limits.least_step) {
      ClearBlock(magnitude + x);
    } else {
      GradientBlock block;
      DifferenceBlock(above + x, below + x, block);
      MagnitudeBlock(block, limits.threshold, magnitude + x);
      SectorBlock(block, sector + x);
    }
  }
  magnitude[0] = magnitude[1] = 0;
  magnitude[width - 2] = magnitude[width - 1] = 0;
}

inline Byte AnyOf(const Byte* block) {
  Byte any = 0;
  for (std::size_t i = 0; i < kBlock; ++i)
    any |= block[i];
  return any;
}

/// The vertex of a parabola through three magnitudes lies within half a pixel of the middle one, and
/// opens downwards, exactly when no neighbour is larger and not both are equal.
void PeakBlock(const Byte* above, const Byte* centre, const Byte* below, const Byte* sector,
               Byte* peaks) {
  const Byte* const above_left = above - 1;
  const Byte* const centre_left = centre - 1;
  const Byte* const below_left = below - 1;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const Byte s = sector[i];
    const Byte west = centre_left[i], east = centre[i + 1];
    const Byte north = above[i], south = below[i];
    const Byte north_east = above[i + 1], south_west = below_left[i];
    const Byte north_west = above_left[i], south_east = below[i + 1];
    // By the sector's two bits: a chain of comparisons becomes a switch with clang, and then no vector code.
    const bool vertical = (s & 2) != 0, diagonal = (s & 1) != 0;
    const Byte before_straight = vertical ? north : west, after_straight = vertical ? south : east;
    const Byte before_diagonal = vertical ? north_west : north_east;
    const Byte after_diagonal = vertical ? south_east : south_west;
    const Byte before = diagonal ? before_diagonal : before_straight;
    const Byte after = diagonal ? after_diagonal : after_straight;
    const Byte larger = before > after ? before : after;
    const Byte smaller = before < after ? before : after;
    const bool is_peak = (larger <= centre[i]) & (smaller < centre[i]);
    peaks[i] = is_peak ? Byte{255} : Byte{0};
  }
}

void PeakRow(const Byte* above, const Byte* centre, const Byte* below, const Byte* sector,
             std::size_t width, Byte* peaks) {
  for (std::size_t x = 0; x < width; x += kBlock) {
    if (AnyOf(centre + x) == 0) {
      ClearBlock(peaks + x);
    } else {
      PeakBlock(above + x, centre + x, below + x, sector + x, peaks + x);
    }
  }
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const RowKernels kRowKernels = {SumRow, SmoothRow, GradientRow, PeakRow};
}

}  // namespace orvandel
