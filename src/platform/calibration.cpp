#include "platform/calibration.h"

namespace orvandel {
namespace {

constexpr std::uint32_t kRealTimeClass = 256;
constexpr int kTimeCritical = 15;

}  // namespace

std::uint64_t MeasureTickRate(KernelClock& kernel) {
  const std::uint32_t priority_class = kernel.GetPriorityClass();
  const int thread_priority = kernel.GetThreadPriority();
  kernel.SetPriorityClass(kRealTimeClass);
  kernel.SetThreadPriority(kTimeCritical);

  const std::int64_t frequency = kernel.QueryPerformanceFrequency();
  const std::uint64_t first_tick = kernel.ReadTimeStampCounter();
  const std::int64_t target = kernel.QueryPerformanceCounter() + frequency / 4;
  while (kernel.QueryPerformanceCounter() < target) {
  }
  const std::uint64_t last_tick = kernel.ReadTimeStampCounter();

  kernel.SetPriorityClass(priority_class);
  kernel.SetThreadPriority(thread_priority);
  return (last_tick - first_tick) * 4;
}

}  // namespace orvandel
