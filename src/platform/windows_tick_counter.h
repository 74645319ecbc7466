#pragma once

#include <atomic>
#include <cstdint>

#include "platform/calibration.h"
#include "platform/tick_counter.h"

namespace orvandel {

/// Windows' own calls; failures are ignored, as the measurement is then only less quiet.
class WindowsKernelClock final : public KernelClock {
 public:
  std::uint32_t GetPriorityClass() override;
  void SetPriorityClass(std::uint32_t priority_class) override;
  int GetThreadPriority() override;
  void SetThreadPriority(int priority) override;
  std::int64_t QueryPerformanceFrequency() override;
  std::int64_t QueryPerformanceCounter() override;
  std::uint64_t ReadTimeStampCounter() override;
};

/// The processor's time-stamp counter. Its rate is measured once a process; threads that come first
/// at the same time may both measure, and either value will do.
class WindowsTickCounter final : public TickCounter {
 public:
  std::uint64_t Read() override;
  std::uint64_t TicksPerSecond() override;

 private:
  std::atomic<std::uint64_t> ticks_per_second_{0};
};

}  // namespace orvandel
