#pragma once

#include <cstdint>

namespace orvandel::render {

/// Pseudo-random numbers that are the same on every platform.
/// Method: SplitMix64; G. L. Steele Jr., D. Lea, C. H. Flood, "Fast splittable pseudorandom number
/// generators", OOPSLA 2014.
class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed) : state_(seed) {}

  /// 64 random bits.
  std::uint64_t Bits() {
    state_ += 0x9e3779b97f4a7c15u;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
  }

  /// Uniform in [low, high).
  double Uniform(double low, double high) {
    constexpr double kUnit = 1.0 / 9007199254740992.0;  // 2^-53
    return low + (high - low) * (static_cast<double>(Bits() >> 11) * kUnit);
  }

  /// Close to a normal deviate of mean 0 and deviation 1: the sum of twelve uniform ones, whose
  /// variance is 12 / 12. It stays within 6.
  double NearlyNormal() {
    constexpr int kLanes = 12;
    std::uint32_t sum = 0;
    for (int word = 0; word < kLanes / 4; ++word) {
      const std::uint64_t bits = Bits();
      for (int shift = 0; shift < 64; shift += 16)
        sum += static_cast<std::uint32_t>((bits >> shift) & 0xffffu);
    }
    constexpr double kMean = kLanes * 65535.0 / 2;
    return (static_cast<double>(sum) - kMean) / 65536.0;
  }

 private:
  std::uint64_t state_;
};

}  // namespace orvandel::render
