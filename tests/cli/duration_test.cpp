#include "cli/duration.h"

#include <gtest/gtest.h>

#include "cli/tool_error.h"

namespace orvandel::cli::test {
namespace {

TEST(Duration, UnitsAreMicrosecondsMillisecondsAndSeconds) {
  EXPECT_EQ(ParseTimeoutUs("500us"), 500);
  EXPECT_EQ(ParseTimeoutUs("20ms"), 20'000);
  EXPECT_EQ(ParseTimeoutUs("1.5s"), 1'500'000);
}

TEST(Duration, ZeroNeedsNoUnit) {
  EXPECT_EQ(ParseTimeoutUs("0"), 0);
  EXPECT_EQ(ParseTimeoutUs("0ms"), 0);
}

TEST(Duration, PartsOfAMicrosecondAreRounded) {
  EXPECT_EQ(ParseTimeoutUs("0.4us"), 0);
  EXPECT_EQ(ParseTimeoutUs("0.0006ms"), 1);
}

TEST(Duration, TheLongestBudgetIsJustBelowFourSeconds) {
  EXPECT_EQ(ParseTimeoutUs("3.999s"), 3'999'000);
  EXPECT_EQ(ParseTimeoutUs("3999ms"), 3'999'000);
  EXPECT_THROW(ParseTimeoutUs("3999001us"), UsageError);
  EXPECT_THROW(ParseTimeoutUs("4s"), UsageError);
}

TEST(Duration, OtherTextIsRefused) {
  for (const char* text : {"", "20", "ms", "20 ms", "20m", "-1ms", "1,5s", "1e3", "s5", "1.2.3s"})
    EXPECT_THROW(ParseTimeoutUs(text), UsageError) << "'" << text << "'";
}

}  // namespace
}  // namespace orvandel::cli::test
