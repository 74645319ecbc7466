#include "cli/duration.h"

#include <gtest/gtest.h>

#include "cli/tool_error.h"

namespace orvandel::cli::test {
namespace {

int Parsed(const char* text) {
  return ParseTimeoutUs(text, kMaxSegmentTimeoutUs);
}

TEST(Duration, UnitsAreMicrosecondsMillisecondsAndSeconds) {
  EXPECT_EQ(Parsed("500us"), 500);
  EXPECT_EQ(Parsed("20ms"), 20'000);
  EXPECT_EQ(Parsed("1.5s"), 1'500'000);
}

TEST(Duration, ZeroNeedsNoUnit) {
  EXPECT_EQ(Parsed("0"), 0);
  EXPECT_EQ(Parsed("0ms"), 0);
}

TEST(Duration, PartsOfAMicrosecondAreRounded) {
  EXPECT_EQ(Parsed("0.4us"), 0);
  EXPECT_EQ(Parsed("0.0006ms"), 1);
}

TEST(Duration, TheLongestBudgetIsJustBelowFourSeconds) {
  EXPECT_EQ(Parsed("3.999s"), 3'999'000);
  EXPECT_EQ(Parsed("3999ms"), 3'999'000);
  EXPECT_THROW(Parsed("3999001us"), UsageError);
  EXPECT_THROW(Parsed("4s"), UsageError);
}

TEST(Duration, ASearchForShapesMayTakeLonger) {
  EXPECT_EQ(ParseTimeoutUs("1000s", kMaxShapeTimeoutUs), 1'000'000'000);
  EXPECT_THROW(ParseTimeoutUs("1000.001s", kMaxShapeTimeoutUs), UsageError);
}

TEST(Duration, OtherTextIsRefused) {
  for (const char* text : {"", "20", "ms", "20 ms", "20m", "-1ms", "1,5s", "1e3", "s5", "1.2.3s"})
    EXPECT_THROW(Parsed(text), UsageError) << "'" << text << "'";
}

}  // namespace
}  // namespace orvandel::cli::test
