#include "evaluation/classic_pixels.h"

#include <gtest/gtest.h>

namespace orvandel::evaluation::test {
namespace {

TEST(ClassicPixels, TheCentreOfTheFirstPixelIsAtAHalf) {
  EXPECT_EQ(ToClassicPixels(Point{0, 0}), (Point{0.5, 0.5}));
  EXPECT_EQ(FromClassicPixels(Point{0.5, 0.5}), (Point{0, 0}));
}

TEST(ClassicPixels, APoseMovesWithItsScene) {
  const Similarity pose = {40, 30, 1.5, 2};
  EXPECT_EQ(ToClassicPixels(pose), (Similarity{40.5, 30.5, 1.5, 2}));
  EXPECT_EQ(FromClassicPixels(ToClassicPixels(pose)), pose);
}

TEST(ClassicPixels, GoingThereAndBackKeepsEveryBitInsideImages) {
  // From 0.25 on, the difference of a double and 0.5 is a double.
  for (const double x : {0.25, 0.3, 0.75, 1.1, 123.456789012345, 65534.99999999999})
    EXPECT_EQ(ToClassicPixels(FromClassicPixels(Point{x, x})), (Point{x, x}));
}

}  // namespace
}  // namespace orvandel::evaluation::test
