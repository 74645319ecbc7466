#include "platform/calibration.h"

#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace orvandel::test {
namespace {

/// A system whose counters give what a test says, and which writes down every call.
class ScriptedKernel final : public KernelClock {
 public:
  std::int64_t frequency = 1000;
  std::deque<std::int64_t> performance_counts;
  std::deque<std::uint64_t> time_stamps;
  std::vector<std::string> calls;

  std::uint32_t GetPriorityClass() override {
    calls.push_back("get class");
    return 32;
  }
  void SetPriorityClass(std::uint32_t priority_class) override {
    calls.push_back("set class " + std::to_string(priority_class));
  }
  int GetThreadPriority() override {
    calls.push_back("get thread");
    return -1;
  }
  void SetThreadPriority(int priority) override {
    calls.push_back("set thread " + std::to_string(priority));
  }
  std::int64_t QueryPerformanceFrequency() override {
    calls.push_back("frequency");
    return frequency;
  }
  std::int64_t QueryPerformanceCounter() override {
    calls.push_back("counter");
    return Take(performance_counts);
  }
  std::uint64_t ReadTimeStampCounter() override {
    calls.push_back("stamp");
    return Take(time_stamps);
  }

 private:
  template <typename Value>
  Value Take(std::deque<Value>& values) {
    if (values.empty()) {
      ADD_FAILURE() << "one reading too many";
      return Value{1} << 62;  // ends any waiting
    }
    const Value value = values.front();
    values.pop_front();
    return value;
  }
};

ScriptedKernel MakeKernel(std::int64_t frequency, std::deque<std::int64_t> performance_counts,
                          std::deque<std::uint64_t> time_stamps) {
  ScriptedKernel kernel;
  kernel.frequency = frequency;
  kernel.performance_counts = std::move(performance_counts);
  kernel.time_stamps = std::move(time_stamps);
  return kernel;
}

TEST(Calibration, CallsTheSystemInOrder) {
  ScriptedKernel kernel = MakeKernel(1000, {500, 600, 749, 750}, {10, 20});
  MeasureTickRate(kernel);
  EXPECT_EQ(kernel.calls,
            (std::vector<std::string>{"get class", "get thread", "set class 256", "set thread 15",
                                      "frequency", "stamp", "counter", "counter", "counter",
                                      "counter", "stamp", "set class 32", "set thread -1"}));
}

TEST(Calibration, IsFourTimesWhatAQuarterOfASecondTicks) {
  ScriptedKernel kernel = MakeKernel(1000, {500, 750}, {7'000'000'000, 7'750'000'123});
  EXPECT_EQ(MeasureTickRate(kernel), 3'000'000'492U);
}

TEST(Calibration, WaitsUntilTheTargetIsReached) {
  ScriptedKernel kernel = MakeKernel(1000, {0, 249, 250}, {0, 1});
  EXPECT_EQ(MeasureTickRate(kernel), 4U);
  EXPECT_TRUE(kernel.performance_counts.empty());
}

TEST(Calibration, QuarterOfTheFrequencyIsTruncated) {
  ScriptedKernel kernel = MakeKernel(1003, {0, 249, 250}, {0, 1});  // 250.75
  EXPECT_EQ(MeasureTickRate(kernel), 4U);
  EXPECT_TRUE(kernel.performance_counts.empty());
}

TEST(Calibration, CounterThatStepsOverTheTargetEndsTheWait) {
  ScriptedKernel kernel = MakeKernel(1000, {0, 9999}, {0, 5});
  EXPECT_EQ(MeasureTickRate(kernel), 20U);
}

TEST(Calibration, CountersMayBeNegativeOrWrap) {
  ScriptedKernel kernel = MakeKernel(1000, {-300, -51, -50}, {0xffffffffffffffff - 9, 30});
  EXPECT_EQ(MeasureTickRate(kernel), 160U);
  EXPECT_TRUE(kernel.performance_counts.empty());
}

}  // namespace
}  // namespace orvandel::test
