#include "examples/render/coverage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "examples/render/noise.h"

namespace orvandel::render {
namespace {

constexpr Pose kInPlace{};
constexpr Size kImage{40, 30};

/// How much of pixel `index` along one axis lies between two coordinates.
double Overlap(int index, double low, double high) {
  return std::max(0.0, std::min(index + 0.5, high) - std::max(index - 0.5, low));
}

/// The part of a polygon where nx * x + ny * y <= limit.
/// Method: I. E. Sutherland, G. W. Hodgman, "Reentrant polygon clipping", CACM 17(1), 1974.
Outline ClipToHalfPlane(const Outline& polygon, Point normal, double limit) {
  Outline clipped;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point a = polygon[i];
    const Point b = polygon[(i + 1) % polygon.size()];
    const double outside_a = Dot(normal, a) - limit;
    const double outside_b = Dot(normal, b) - limit;
    if (outside_a <= 0) clipped.push_back(a);
    if ((outside_a < 0 && outside_b > 0) || (outside_a > 0 && outside_b < 0))
      clipped.push_back(a + (outside_a / (outside_a - outside_b)) * (b - a));
  }
  return clipped;
}

/// The area that a polygon shares with one pixel, by clipping: a second way to the coverage.
double ClippedArea(const Outline& polygon, int column, int row) {
  Outline clipped = ClipToHalfPlane(polygon, {1, 0}, column + 0.5);
  clipped = ClipToHalfPlane(clipped, {-1, 0}, 0.5 - column);
  clipped = ClipToHalfPlane(clipped, {0, 1}, row + 0.5);
  clipped = ClipToHalfPlane(clipped, {0, -1}, 0.5 - row);
  return std::abs(SignedArea(clipped));
}

/// A polygon whose corners lie around (20, 15) at random distances: as a rule not convex.
Outline RandomStar(RandomSource& random) {
  Outline star;
  for (int corner = 0; corner < 9; ++corner)
    star.push_back(Point{20, 15} + random.Uniform(2, 22) * Direction(corner * 40));
  return star;
}

void ExpectCoverage(const Outline& outline, const Coverage& coverage, Size image) {
  for (int row = 0; row < image.height; ++row) {
    for (int column = 0; column < image.width; ++column)
      ASSERT_NEAR(coverage.At(column, row), ClippedArea(outline, column, row), 1e-11)
          << column << ", " << row;
  }
}

TEST(Coverage, AnUprightRectangleCoversItsOverlapWithEachPixel) {
  // Borders inside pixels, on their centres and on their edges.
  for (const double offset : {0.0, 0.125, 0.3, 0.5, 0.77}) {
    const Point centre{12 + offset, 9 - offset / 3};
    const Coverage coverage = CoverShape({Rectangle(centre, 9.4, 5)}, kInPlace, kImage);
    for (int row = 0; row < kImage.height; ++row) {
      for (int column = 0; column < kImage.width; ++column) {
        const double expected = Overlap(column, centre.x - 4.7, centre.x + 4.7) *
                                Overlap(row, centre.y - 2.5, centre.y + 2.5);
        ASSERT_NEAR(coverage.At(column, row), expected, 1e-12) << column << ", " << row;
      }
    }
  }
}

TEST(Coverage, ADiagonalThroughPixelCentresHalvesThem) {
  const Coverage coverage = CoverShape({{{0, 0}, {20, 0}, {20, 20}}}, kInPlace, kImage);
  for (int i = 1; i < 20; ++i) {
    EXPECT_NEAR(coverage.At(i, i), 0.5, 1e-12);
    EXPECT_NEAR(coverage.At(i, i + 1), 0, 1e-12);
  }
}

TEST(Coverage, EveryPixelAgreesWithClippingThePolygonToIt) {
  RandomSource random(/*seed=*/7);
  for (int trial = 0; trial < 25; ++trial) {  // the stars reach beyond the image on every side
    const Outline star = RandomStar(random);
    ExpectCoverage(star, CoverShape({star}, kInPlace, kImage), kImage);
  }
}

TEST(Coverage, ThePoseTurnsScalesAndMovesTheShape) {
  const double angle = 0.3;
  const Pose pose{19.3, 14.8, angle * 180 / kPi, 1.7};
  const Outline shape = {{-5, -4}, {6, -3}, {3, 5}};
  Outline placed;
  for (const Point& p : shape) {
    placed.push_back({19.3 + 1.7 * (std::cos(angle) * p.x - std::sin(angle) * p.y),
                      14.8 + 1.7 * (std::sin(angle) * p.x + std::cos(angle) * p.y)});
  }
  const Coverage coverage = CoverShape({shape}, pose, kImage);
  for (int row = 0; row < kImage.height; ++row) {
    for (int column = 0; column < kImage.width; ++column)
      ASSERT_NEAR(coverage.At(column, row), ClippedArea(placed, column, row), 1e-7);
  }
}

TEST(Coverage, ARotatedSquareKeepsItsArea) {
  for (const double angle_deg : {0.0, 1.0, 30.0, 45.0, 89.0, 90.0, 123.4, -60.0}) {
    const Coverage coverage =
        CoverShape({Rectangle({}, 10, 10)}, {20.2, 14.7, angle_deg, 1.5}, kImage);
    EXPECT_NEAR(coverage.Total(), 225, 1e-5) << angle_deg;  // directions are multiples of 2^-30
  }
}

TEST(Coverage, ADiscCoversItsArea) {
  for (const double scale : {0.6, 1.0, 2.0}) {
    const double radius = 6 * scale;
    const Coverage coverage = CoverShape({Circle({}, 6)}, {20.4, 15.1, 0, scale}, kImage);
    EXPECT_NEAR(coverage.Total(), kPi * radius * radius, kTwoPi * radius * scale * kFlatness);
  }
}

TEST(Coverage, AHoleIsLeftOutWhicheverWayItRuns) {
  const Outline box = Rectangle({20, 15}, 20, 20);
  const Outline hole = Rectangle({21.3, 14.6}, 6, 5);
  const Outline reversed_hole(hole.rbegin(), hole.rend());
  const Outline reversed_box(box.rbegin(), box.rend());
  for (const Shape& shape : {Shape{box, {hole}}, Shape{box, {reversed_hole}},
                             Shape{reversed_box, {hole}}, Shape{reversed_box, {reversed_hole}}}) {
    const Coverage coverage = CoverShape(shape, kInPlace, kImage);
    EXPECT_NEAR(coverage.Total(), 20 * 20 - 6 * 5, 1e-9);
    EXPECT_NEAR(coverage.At(21, 15), 0, 1e-12);
    EXPECT_NEAR(coverage.At(12, 15), 1, 1e-12);
  }
}

TEST(Coverage, AShapeThatFillsTheImageCoversEveryPixel) {
  const Coverage coverage = CoverShape({Rectangle({}, 500, 500)}, {3, 4, 20, 1}, kImage);
  EXPECT_EQ(coverage.share.size(), 1200u);
  for (const double share : coverage.share)
    ASSERT_NEAR(share, 1, 1e-12);
}

TEST(Coverage, AShapeOutsideTheImageCoversNothing) {
  for (const Point centre : {Point{-20, 15}, Point{60, 15}, Point{20, -20}, Point{20, 50}}) {
    const Coverage coverage = CoverShape({Rectangle(centre, 10, 10)}, kInPlace, kImage);
    EXPECT_EQ(coverage.Total(), 0) << centre.x << ", " << centre.y;
  }
}

TEST(Coverage, NoOutlineCoversNothing) {
  EXPECT_EQ(CoverShape({}, kInPlace, kImage).Total(), 0);
}

}  // namespace
}  // namespace orvandel::render
