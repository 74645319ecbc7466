#pragma once

#include <chrono>
#include <cstdint>

namespace orvandel::shape {

/// The time at which a search has to end, if any.
class Deadline {
 public:
  Deadline() = default;
  /// @param budget_us  from now on, microseconds; 0 for no end
  explicit Deadline(std::int64_t budget_us) : has_end_(budget_us > 0) {
    // More than a century is no end, and would not fit the clock.
    constexpr std::int64_t kForever = 4'000'000'000'000'000;
    has_end_ = has_end_ && budget_us < kForever;
    if (has_end_) end_ = Clock::now() + std::chrono::microseconds(budget_us);
  }

  bool HasPassed() const { return has_end_ && Clock::now() >= end_; }

 private:
  using Clock = std::chrono::steady_clock;
  bool has_end_ = false;
  Clock::time_point end_;
};

}  // namespace orvandel::shape
