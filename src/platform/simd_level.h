#pragma once

#include <span>

namespace orvandel {

/// Vector instructions that the hot loops are compiled for, each set containing the ones before it.
/// Every level gives the same bits; a higher one is faster.
enum class SimdLevel {
  kBaseline,  ///< what every processor of the architecture has: SSE2 on x86-64, NEON on 64-bit Arm
  kAvx2,
  kAvx512,  ///< F, BW, DQ and VL
};

/// The levels that this build has and this processor runs, lowest first; never empty.
std::span<const SimdLevel> SupportedSimdLevels();

/// The level in force: the highest supported one, unless another is forced.
SimdLevel ActiveSimdLevel();

/// Puts a supported level in force, for tests and benchmarks; one that is not supported is ignored.
/// Not while another thread works.
void ForceSimdLevel(SimdLevel level);

const char* NameOf(SimdLevel level);

}  // namespace orvandel
