#include "platform/windows_tick_counter.h"

#include <cstdint>

#include <gtest/gtest.h>

// The time base for real; what it does in which order is tested with scripted clocks.
namespace orvandel::test {
namespace {

constexpr std::int64_t kBudgetOfACall = 20;  // of the 250 milliseconds that a measurement takes

/// Milliseconds of the performance counter.
class Stopwatch {
 public:
  std::int64_t Milliseconds() {
    return (kernel_.QueryPerformanceCounter() - start_) * 1000 /
           kernel_.QueryPerformanceFrequency();
  }

 private:
  WindowsKernelClock kernel_;
  std::int64_t start_ = kernel_.QueryPerformanceCounter();
};

TEST(WindowsTickCounter, MeasuresItsRateOnceAndForAQuarterOfASecond) {
  WindowsTickCounter counter;
  Stopwatch first;
  const std::uint64_t rate = counter.TicksPerSecond();
  EXPECT_GE(first.Milliseconds(), 250);

  Stopwatch second;
  EXPECT_EQ(counter.TicksPerSecond(), rate);
  EXPECT_LT(second.Milliseconds(), kBudgetOfACall);
}

TEST(WindowsTickCounter, PutsThePrioritiesBack) {
  WindowsKernelClock kernel;
  const std::uint32_t priority_class = kernel.GetPriorityClass();
  const int thread_priority = kernel.GetThreadPriority();
  ASSERT_NE(priority_class, 0U);                     // the call's failure
  EXPECT_GT(MeasureTickRate(kernel), 100'000'000U);  // ticks per second of any processor since 2000
  EXPECT_EQ(kernel.GetPriorityClass(), priority_class);
  EXPECT_EQ(kernel.GetThreadPriority(), thread_priority);
}

TEST(WindowsTickCounter, IsTheProcesssOwn) {
  EXPECT_NE(dynamic_cast<WindowsTickCounter*>(&ProcessTickCounter()), nullptr);
}

}  // namespace
}  // namespace orvandel::test
