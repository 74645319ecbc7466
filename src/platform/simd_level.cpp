#include "platform/simd_level.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>

#if defined(ORVANDEL_X86_LEVELS) && defined(_MSC_VER) && !defined(__clang__)
#include <immintrin.h>

#include <intrin.h>
#endif

namespace orvandel {
namespace {

constexpr std::array kAllLevels = {SimdLevel::kBaseline, SimdLevel::kAvx2, SimdLevel::kAvx512};

#if !defined(ORVANDEL_X86_LEVELS)
SimdLevel HighestOfProcessor() {
  return SimdLevel::kBaseline;
}
#elif defined(_MSC_VER) && !defined(__clang__)
/// The system must save the wide registers too, which XCR0 tells: 6 for AVX, 0xE6 for AVX-512.
SimdLevel HighestOfProcessor() {
  int leaf1[4];
  int leaf7[4];
  __cpuid(leaf1, 1);
  __cpuidex(leaf7, 7, 0);
  constexpr int kOsSaves = 1 << 27;
  constexpr int kAvx2 = 1 << 5;
  constexpr int kAvx512 = 1 << 16 | 1 << 17 | 1 << 30 | 1 << 31;  // F, DQ, BW, VL
  if ((leaf1[2] & kOsSaves) == 0) return SimdLevel::kBaseline;
  const unsigned long long saved = _xgetbv(0);
  if ((saved & 0xE6) == 0xE6 && (leaf7[1] & kAvx512) == kAvx512) return SimdLevel::kAvx512;
  return (saved & 6) == 6 && (leaf7[1] & kAvx2) != 0 ? SimdLevel::kAvx2 : SimdLevel::kBaseline;
}
#else
SimdLevel HighestOfProcessor() {
  if (!__builtin_cpu_supports("avx2")) return SimdLevel::kBaseline;
  const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
  return avx512 ? SimdLevel::kAvx512 : SimdLevel::kAvx2;
}
#endif

SimdLevel HighestLevel() {
  static const SimdLevel highest = HighestOfProcessor();
  return highest;
}

std::atomic<SimdLevel> forced{SimdLevel::kAvx512};

}  // namespace

std::span<const SimdLevel> SupportedSimdLevels() {
  return std::span(kAllLevels).first(static_cast<std::size_t>(HighestLevel()) + 1);
}

SimdLevel ActiveSimdLevel() {
  return std::min(HighestLevel(), forced.load(std::memory_order_relaxed));
}

void ForceSimdLevel(SimdLevel level) {
  if (level <= HighestLevel()) forced.store(level, std::memory_order_relaxed);
}

const char* NameOf(SimdLevel level) {
  switch (level) {
    case SimdLevel::kBaseline:
      return "baseline";
    case SimdLevel::kAvx2:
      return "AVX2";
    case SimdLevel::kAvx512:
      return "AVX-512";
  }
  return "";
}

}  // namespace orvandel
