#include "cli/rectangle.h"

#include <gtest/gtest.h>

#include "cli/tool_error.h"

namespace orvandel::cli::test {
namespace {

TEST(Rectangle, FourWholeNumbersAreRead) {
  const Rectangle part = ParseRectangle("0,12,240,200");
  EXPECT_EQ(part.x, 0);
  EXPECT_EQ(part.y, 12);
  EXPECT_EQ(part.width, 240);
  EXPECT_EQ(part.height, 200);
}

TEST(Rectangle, OtherTextIsRefused) {
  for (const char* text : {"", "1,2,3", "1,2,3,4,5", "1,2,3,x", "1.5,2,3,4", "1, 2,3,4", ",,,"})
    EXPECT_THROW(ParseRectangle(text), UsageError) << "'" << text << "'";
}

TEST(Rectangle, ARectangleWithoutPixelsIsRefused) {
  for (const char* text : {"-1,0,5,5", "0,-1,5,5", "0,0,0,5", "0,0,5,0"})
    EXPECT_THROW(ParseRectangle(text), UsageError) << text;
}

TEST(Rectangle, ItMayTouchTheImageBorderAndNoMore) {
  EXPECT_NO_THROW(CheckInside({.x = 3, .y = 1, .width = 7, .height = 9}, 10, 10, "p"));
  EXPECT_THROW(CheckInside({.x = 4, .y = 1, .width = 7, .height = 9}, 10, 10, "p"), UsageError);
  EXPECT_THROW(CheckInside({.x = 3, .y = 2, .width = 7, .height = 9}, 10, 10, "p"), UsageError);
}

TEST(Rectangle, HugeNumbersDoNotWrapAround) {
  constexpr int kHuge = 2'147'483'647;
  EXPECT_THROW(CheckInside({.x = kHuge, .y = 0, .width = kHuge, .height = 1}, 10, 10, "p"),
               UsageError);
}

}  // namespace
}  // namespace orvandel::cli::test
