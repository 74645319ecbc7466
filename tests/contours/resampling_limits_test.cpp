#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/reference/resampling.h"
#include "tests/support/contour_sets.h"

// Long pieces, growth of the arrays, and positions that are no numbers.
namespace orvandel::test {
namespace {

/// Three points: the first piece has `length`, and the last point is anywhere.
ContourHandle SetWithPieceOf(double length) {
  TestContour contour;
  contour.points = {{0, 0, 1, 0}, {length, 0, 1, 0}, {5, 5, 1, 0}};
  return MakeSet({contour});
}

TEST(ResamplingCapacity, StartsAtTwiceThePointsAnd10AndDoublesWhenFewerThan6AreLeft) {
  // 3 points: 16 elements. A piece of whole length L emits L - 1 points, so L + 1 come out.
  const struct {
    int length, num_points, capacity;
  } kCases[] = {{2, 3, 16},   {9, 10, 16},  {10, 11, 32}, {25, 26, 32},
                {26, 27, 64}, {57, 58, 64}, {58, 59, 128}};
  for (const auto& c : kCases) {
    const ContourHandle set = SetWithPieceOf(c.length);
    ctd_resample(set.get());
    EXPECT_EQ(ctd_point_count(set.get()), c.num_points);
    EXPECT_EQ(Fields(set).point_capacity, c.capacity) << c.num_points;
  }
}

TEST(ResamplingCapacity, CountsThePointsOfAllContours) {
  TestContour contour;
  contour.points = {{0, 0, 0, 0}, {1, 0, 0, 0}, {2, 0, 0, 0}};
  const ContourHandle set = MakeSet({contour, contour, contour});
  ctd_resample(set.get());
  EXPECT_EQ(ctd_point_count(set.get()), 9);
  EXPECT_EQ(Fields(set).point_capacity, 2 * 9 + 10);
}

TEST(ResamplingLimits, ALongPieceKeepsAllItsPointsThroughTheGrowth) {
  const ContourHandle set = SetWithPieceOf(100000);
  ctd_resample(set.get());
  ASSERT_EQ(ctd_point_count(set.get()), 100001);
  for (int k = 0; k < 100000; ++k)
    ASSERT_EQ(ctd_contour_x(set.get(), 0, k), k);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 100000), 5.0);
  EXPECT_EQ(ctd_contour_y(set.get(), 0, 100000), 5.0);
}

TEST(ResamplingLimits, APieceThatNeedsMoreThan2To24PointsEmitsOne) {
  // A piece of whole length L needs L - 1 points.
  for (const double length : {16777216.0 + 2, 1e9, 1e300}) {
    const ContourHandle set = SetWithPieceOf(length);
    ctd_resample(set.get());
    ASSERT_EQ(ctd_point_count(set.get()), 3) << length;
    EXPECT_EQ(ctd_contour_x(set.get(), 0, 1), 1.0);
  }
}

TEST(ResamplingLimits, ATinyStepOverAPieceEmitsOnePointAsWell) {
  const ContourHandle set = SetWithPieceOf(4);
  Fields(set).step = 1e-300;
  ctd_resample(set.get());
  ASSERT_EQ(ctd_point_count(set.get()), 3);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 1), 1e-300);
}

TEST(ResamplingLimits, AnEndlessStepEmitsOnePointAPiece) {
  const ContourHandle set = SetWithPieceOf(4);
  Fields(set).step = std::numeric_limits<double>::infinity();
  ctd_resample(set.get());
  ASSERT_EQ(ctd_point_count(set.get()), 3);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 2), 5.0);
}

TEST(ResamplingLimits, APieceToAPositionThatIsNoNumberEmitsOnePoint) {
  const double nan = std::nan("");
  const double inf = std::numeric_limits<double>::infinity();
  for (const double x : {nan, inf, -inf}) {
    const ContourHandle set = SetWithPieceOf(x);
    ctd_resample(set.get());
    ASSERT_EQ(ctd_point_count(set.get()), 3) << x;
    EXPECT_EQ(ctd_contour_x(set.get(), 0, 0), 0.0);
    EXPECT_EQ(ctd_contour_x(set.get(), 0, 2), 5.0);
  }
}

TEST(ResamplingLimits, ASquareThatOverflowsIsNoFiniteLength) {
  // 1e200 squared is infinite, so the length is.
  const ContourHandle set = SetWithPieceOf(1e200);
  ctd_resample(set.get());
  EXPECT_EQ(ctd_point_count(set.get()), 3);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 1), 1.0);
}

TEST(ResamplingLimits, APositionThatIsNoNumberDoesNotReachOtherContours) {
  TestContour broken;
  broken.points = {{0, 0, 0, 0}, {std::nan(""), 0, 0, 0}, {2, 0, 0, 0}, {3, 0, 0, 0}};
  TestContour sound;
  sound.points = {{0, 0, 0, 0}, {1, 0, 0, 0}, {2, 0, 0, 0}};
  const ContourHandle set = MakeSet({broken, sound});
  ctd_resample(set.get());
  EXPECT_EQ(ctd_contour_size(set.get(), 0), 4);
  ASSERT_EQ(ctd_contour_size(set.get(), 1), 3);
  for (int k = 0; k < 3; ++k)
    EXPECT_EQ(ctd_contour_x(set.get(), 1, k), k);
}

}  // namespace
}  // namespace orvandel::test
