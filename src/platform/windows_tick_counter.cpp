#include "platform/windows_tick_counter.h"

#include "platform/windows_api.h"
#undef ReadTimeStampCounter  // a macro of Windows' own
#if defined(_MSC_VER)
#include <intrin.h>
#else
#include <x86intrin.h>
#endif

namespace orvandel {

std::uint32_t WindowsKernelClock::GetPriorityClass() {
  return ::GetPriorityClass(::GetCurrentProcess());
}

void WindowsKernelClock::SetPriorityClass(std::uint32_t priority_class) {
  ::SetPriorityClass(::GetCurrentProcess(), priority_class);
}

int WindowsKernelClock::GetThreadPriority() {
  return ::GetThreadPriority(::GetCurrentThread());
}

void WindowsKernelClock::SetThreadPriority(int priority) {
  ::SetThreadPriority(::GetCurrentThread(), priority);
}

std::int64_t WindowsKernelClock::QueryPerformanceFrequency() {
  LARGE_INTEGER frequency;
  ::QueryPerformanceFrequency(&frequency);
  return frequency.QuadPart;
}

std::int64_t WindowsKernelClock::QueryPerformanceCounter() {
  LARGE_INTEGER count;
  ::QueryPerformanceCounter(&count);
  return count.QuadPart;
}

std::uint64_t WindowsKernelClock::ReadTimeStampCounter() {
  return __rdtsc();
}

std::uint64_t WindowsTickCounter::Read() {
  return __rdtsc();
}

std::uint64_t WindowsTickCounter::TicksPerSecond() {
  std::uint64_t rate = ticks_per_second_.load();
  if (rate == 0) {
    WindowsKernelClock kernel;
    rate = MeasureTickRate(kernel);
    ticks_per_second_.store(rate);
  }
  return rate;
}

}  // namespace orvandel
