#pragma once

#include <cstdint>

namespace orvandel {

/// The operating system's calls that the calibration makes, in Windows' terms and values.
class KernelClock {
 public:
  virtual ~KernelClock() = default;
  virtual std::uint32_t GetPriorityClass() = 0;
  virtual void SetPriorityClass(std::uint32_t priority_class) = 0;
  virtual int GetThreadPriority() = 0;
  virtual void SetThreadPriority(int priority) = 0;
  virtual std::int64_t QueryPerformanceFrequency() = 0;
  virtual std::int64_t QueryPerformanceCounter() = 0;
  virtual std::uint64_t ReadTimeStampCounter() = 0;
};

/// Measures the time-stamp counter against the performance counter over a quarter of a second, at
/// real-time priority so that nothing interrupts the measurement, and restores the priorities.
///
/// @return  time-stamp ticks per second.
std::uint64_t MeasureTickRate(KernelClock& kernel);

}  // namespace orvandel
