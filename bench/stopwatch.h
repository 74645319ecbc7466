#pragma once

#include <chrono>

namespace orvandel::bench {

/// Seconds that a call takes.
template <typename Call>
double SecondsOf(const Call& call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace orvandel::bench
