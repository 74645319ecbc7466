#pragma once

#include <cstdint>

#include "platform/tick_counter.h"

namespace orvandel {

/// The end of a search's time budget, on the process's tick counter.
class Deadline {
 public:
  /// Starts now. The first ever on Windows measures the counter's rate before, which takes a quarter
  /// of a second and is not charged to the budget.
  ///
  /// @param counter     outlives the deadline.
  /// @param timeout_us  microseconds.
  Deadline(TickCounter& counter, std::int32_t timeout_us)
      : counter_(counter), end_(EndOf(counter, timeout_us)) {}

  bool HasPassed() const { return static_cast<std::int64_t>(counter_.Read()) > end_; }

 private:
  static std::int64_t EndOf(TickCounter& counter, std::int32_t timeout_us) {
    const auto rate = static_cast<std::int64_t>(counter.TicksPerSecond());
    const auto start = static_cast<std::int64_t>(counter.Read());
    return start + timeout_us * rate / 1000000;
  }

  TickCounter& counter_;
  std::int64_t end_;
};

}  // namespace orvandel
