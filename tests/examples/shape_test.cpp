#include "examples/render/shape.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace orvandel::render {
namespace {

std::vector<Corner> RoundedBox(double width, double height, double radius) {
  std::vector<Corner> corners;
  for (const Point& at : Rectangle({}, width, height))
    corners.push_back({at, radius});
  return corners;
}

/// A curve's polygon lies inside it by at most kFlatness, so over the curve's length no more area
/// than this is lost.
double AreaLost(double curve_length) {
  return curve_length * kFlatness;
}

TEST(Shape, ARectangleHasItsAreaAndRunsClockwise) {
  EXPECT_DOUBLE_EQ(SignedArea(Rectangle({3, -7}, 20, 10)), 200);
}

TEST(Shape, ReversingAnOutlineChangesTheSignOfItsArea) {
  const Outline clockwise = Rectangle({}, 20, 10);
  EXPECT_DOUBLE_EQ(SignedArea(Outline(clockwise.rbegin(), clockwise.rend())), -200);
}

TEST(Shape, AnEmptyOutlineHasNoArea) {
  EXPECT_EQ(SignedArea({}), 0);
}

TEST(Shape, ACirclesPointsLieOnIt) {
  for (const Point& point : Circle({5, 6}, 40))
    EXPECT_NEAR(Length(point - Point{5, 6}), 40, 1e-7);  // directions are multiples of 2^-30
}

TEST(Shape, ACirclesAreaIsShortByLessThanItsFlatnessAllows) {
  for (const double radius : {1.0, 5.0, 20.0, 130.0}) {
    const double missing = kPi * radius * radius - SignedArea(Circle({}, radius));
    EXPECT_GT(missing, 0) << radius;
    EXPECT_LT(missing, AreaLost(kTwoPi * radius)) << radius;
  }
}

TEST(Shape, RoundingConvexCornersTakesTheSquareLessTheQuarterDiscAway) {
  const double radius = 12;
  const double area = SignedArea(RoundedPolygon(RoundedBox(100, 60, radius)));
  EXPECT_NEAR(area, 100 * 60 - (4 - kPi) * radius * radius, AreaLost(kTwoPi * radius));
}

TEST(Shape, RoundingAConcaveCornerFillsIt) {
  // An L of three 10 x 10 squares; its inner corner lies at (10, 10).
  const std::vector<Corner> corners = {{{0, 0}},   {{10, 0}},  {{10, 10}, 4},
                                       {{20, 10}}, {{20, 20}}, {{0, 20}}};
  const double filled = (1 - kPi / 4) * 4 * 4;
  EXPECT_NEAR(SignedArea(RoundedPolygon(corners)), 300 + filled, AreaLost(kPi / 2 * 4));
}

TEST(Shape, ACornerOfRadius0StaysSharp) {
  const Outline outline = RoundedPolygon(RoundedBox(8, 6, 0));
  ASSERT_EQ(outline.size(), 4u);
  EXPECT_EQ(outline[2].x, 4);
  EXPECT_EQ(outline[2].y, 3);
}

TEST(Shape, AnInsetRoundedBoxLosesWhatSteinersFormulaTells) {
  const double width = 100, height = 60, radius = 15, distance = 6;
  const double area = width * height - (4 - kPi) * radius * radius;
  const double perimeter = 2 * (width + height) - (8 - kTwoPi) * radius;
  const double expected = area - perimeter * distance + kPi * distance * distance;
  const Outline inset = RoundedPolygon(Inset(RoundedBox(width, height, radius), distance));
  EXPECT_NEAR(SignedArea(inset), expected, AreaLost(kTwoPi * radius));
}

TEST(Shape, AnInsetConcaveCornerKeepsItsCentre) {
  const std::vector<Corner> corners = {{{0, 0}},   {{10, 0}},  {{10, 10}, 4},
                                       {{20, 10}}, {{20, 20}}, {{0, 20}}};
  const Corner moved = Inset(corners, 2)[2];  // arc centre at (14, 6), before and after
  EXPECT_NEAR(moved.at.x, 8, 1e-12);
  EXPECT_NEAR(moved.at.y, 12, 1e-12);
  EXPECT_NEAR(moved.radius, 6, 1e-12);
}

TEST(Shape, ABarAndASlotHaveTheirAreas) {
  const Point from{2, 3};
  const Point to{32, 43};  // 50 apart
  EXPECT_NEAR(std::abs(SignedArea(Bar(from, to, 4))), 200, 1e-9);
  EXPECT_NEAR(std::abs(SignedArea(Slot(from, to, 4))), 2 * 4 * 50 + kPi * 16, AreaLost(kTwoPi * 4));
}

TEST(Shape, AnArcBandsAreaIsItsMiddlesLengthTimesItsThickness) {
  for (const double sweep_deg : {10.0, 90.0, 200.0, 350.0}) {
    const double length = sweep_deg * kPi / 180 * 50;
    const Outline band = ArcBand({1, 2}, 50, 6, 33, 33 + sweep_deg);
    EXPECT_NEAR(std::abs(SignedArea(band)), length * 6, AreaLost(2 * length)) << sweep_deg;
  }
}

TEST(Shape, AnArcBandStartsAtItsFirstAngleAndTurnsClockwise) {
  const Outline quarter = ArcBand({}, 50, 6, 0, 90);
  EXPECT_NEAR(quarter.front().x, 53, 1e-7);
  EXPECT_NEAR(quarter.front().y, 0, 1e-7);
  for (const Point& point : quarter) {  // right and below of the centre, y down
    EXPECT_GE(point.x, -1e-7);
    EXPECT_GE(point.y, -1e-7);
  }
}

}  // namespace
}  // namespace orvandel::render
