#include "platform/tick_counter.h"

#include <chrono>
#include <cstdint>
#include <thread>

#include <gtest/gtest.h>

namespace orvandel::test {
namespace {

class FixedCounter final : public TickCounter {
 public:
  std::uint64_t Read() override { return 42; }
  std::uint64_t TicksPerSecond() override { return 7; }
};

TEST(TickCounter, NeverGoesBack) {
  TickCounter& counter = ProcessTickCounter();
  std::uint64_t last = counter.Read();
  for (int i = 0; i < 10'000; ++i) {
    const std::uint64_t now = counter.Read();
    ASSERT_GE(now, last);
    last = now;
  }
}

TEST(TickCounter, AgreesWithTheClockAboutItsRate) {
  using std::chrono::steady_clock;
  TickCounter& counter = ProcessTickCounter();
  const auto rate = static_cast<double>(counter.TicksPerSecond());
  // The clock is read inside the counter's interval, then outside, so that an interruption between
  // the readings fails neither bound.
  const std::uint64_t outer_begin = counter.Read();
  const auto clock_begin = steady_clock::now();
  const std::uint64_t inner_begin = counter.Read();
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  const std::uint64_t inner_end = counter.Read();
  const auto clock_end = steady_clock::now();
  const std::uint64_t outer_end = counter.Read();

  const double seconds = std::chrono::duration<double>(clock_end - clock_begin).count();
#if !defined( \
    _WIN32)  // a machine that is busy while the rate is measured gives too high a rate there
  EXPECT_GE(static_cast<double>(outer_end - outer_begin) / rate, seconds * 0.99);
#else
  EXPECT_GT(outer_end, outer_begin);
#endif
  EXPECT_LE(static_cast<double>(inner_end - inner_begin) / rate, seconds * 1.01);
}

TEST(TickCounter, RateStaysTheSame) {
  EXPECT_EQ(ProcessTickCounter().TicksPerSecond(), ProcessTickCounter().TicksPerSecond());
}

#if !defined(_WIN32)
TEST(TickCounter, CountsNanosecondsAtOnce) {
  EXPECT_EQ(ProcessTickCounter().TicksPerSecond(), 1'000'000'000U);
}
#endif

TEST(TickCounter, IsReplacedAndComesBack) {
  TickCounter& own = ProcessTickCounter();
  FixedCounter fixed;
  ReplaceProcessTickCounter(&fixed);
  EXPECT_EQ(&ProcessTickCounter(), &fixed);
  EXPECT_EQ(ProcessTickCounter().Read(), 42U);
  EXPECT_EQ(ProcessTickCounter().TicksPerSecond(), 7U);
  ReplaceProcessTickCounter(nullptr);
  EXPECT_EQ(&ProcessTickCounter(), &own);
}

}  // namespace
}  // namespace orvandel::test
