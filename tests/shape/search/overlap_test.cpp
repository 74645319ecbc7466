#include "shape/search/overlap.h"

#include <cmath>

#include <gtest/gtest.h>

namespace orvandel::shape {
namespace {

std::vector<Point> Box(double left, double top, double right, double bottom) {
  return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

TEST(Overlap, OfBoxesIsThatOfTheirSides) {
  OverlapBuffers buffers;
  EXPECT_DOUBLE_EQ(AreaOf(Box(0, 0, 4, 3)), 12.0);
  EXPECT_DOUBLE_EQ(SharedArea(Box(0, 0, 4, 4), Box(1, 2, 9, 9), buffers), 6.0);
  EXPECT_DOUBLE_EQ(SharedArea(Box(0, 0, 4, 4), Box(0, 0, 4, 4), buffers), 16.0);
  EXPECT_DOUBLE_EQ(SharedArea(Box(0, 0, 9, 9), Box(2, 3, 4, 5), buffers), 4.0);
  EXPECT_DOUBLE_EQ(SharedArea(Box(0, 0, 4, 4), Box(5, 0, 9, 4), buffers), 0.0);
  EXPECT_DOUBLE_EQ(SharedArea(Box(0, 0, 4, 4), Box(4, 0, 9, 4), buffers), 0.0);  // side by side
}

TEST(Overlap, OfASquareAndItsTurnByAnEighthIsAnOctagon) {
  OverlapBuffers buffers;
  const double r = std::sqrt(2.0);
  const std::vector<Point> rotated = {{0, -r}, {r, 0}, {0, r}, {-r, 0}};
  // A regular octagon of inner radius 1: 8 tan(22.5 degrees).
  EXPECT_NEAR(SharedArea(Box(-1, -1, 1, 1), rotated, buffers), 8.0 * (r - 1.0), 1e-12);
}

TEST(Overlap, InsideIsWithinAllSides) {
  EXPECT_TRUE(IsInside(Box(0, 0, 4, 3), {1, 1}));
  EXPECT_TRUE(IsInside(Box(0, 0, 4, 3), {4, 3}));
  EXPECT_FALSE(IsInside(Box(0, 0, 4, 3), {4.01, 1}));
  EXPECT_FALSE(IsInside(Box(0, 0, 4, 3), {1, -0.01}));
  EXPECT_FALSE(IsInside({}, {0, 0}));
}

TEST(Overlap, OfLinesAndPointsIsNothing) {
  OverlapBuffers buffers;
  const std::vector<Point> line = {{0, 0}, {5, 5}};
  EXPECT_DOUBLE_EQ(SharedArea(line, Box(0, 0, 4, 4), buffers), 0.0);
  EXPECT_DOUBLE_EQ(SharedArea({}, Box(0, 0, 4, 4), buffers), 0.0);
}

}  // namespace
}  // namespace orvandel::shape
