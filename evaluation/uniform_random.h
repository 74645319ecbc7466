#pragma once

#include <cstdint>
#include <random>

namespace orvandel::evaluation {

/// Random numbers from a seed, the same on every platform (the standard's distributions are not).
class UniformRandom {
 public:
  explicit UniformRandom(std::uint32_t seed) : generator_(seed) {}

  /// In [low, high).
  double Real(double low, double high) {
    const double unit = static_cast<double>(generator_()) / 4294967296.0;
    return low + (high - low) * unit;
  }
  /// In low .. high, both included.
  int Integer(int low, int high) {
    const auto choices = static_cast<std::uint32_t>(high - low) + 1U;
    return low + static_cast<int>(static_cast<std::uint32_t>(generator_()) % choices);
  }
  /// True once in `n` times.
  bool OneIn(int n) { return Integer(1, n) == 1; }

 private:
  std::mt19937 generator_;
};

}  // namespace orvandel::evaluation
