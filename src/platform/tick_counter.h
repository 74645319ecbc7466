#pragma once

#include <cstdint>

namespace orvandel {

/// The counter that bounds a search. Tests replace the process's one by a scripted one.
class TickCounter {
 public:
  virtual ~TickCounter() = default;
  virtual std::uint64_t Read() = 0;
  /// Rate of the counter; may take a quarter of a second when it is asked for the first time.
  virtual std::uint64_t TicksPerSecond() = 0;
};

/// The counter in force: on Windows the processor's time-stamp counter, elsewhere the monotonic
/// clock in nanoseconds.
TickCounter& ProcessTickCounter();

/// Puts another counter in force; null brings the process's own back. Not while a search runs.
/// The caller keeps ownership.
void ReplaceProcessTickCounter(TickCounter* counter);

}  // namespace orvandel
