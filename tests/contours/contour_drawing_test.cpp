#include <cmath>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"
#include "tests/support/grids.h"
#include "tests/support/image_patterns.h"

// Contours drawn into an image of the host's, with direction marks at every fifth point.
namespace orvandel::test {
namespace {

constexpr int kValue = 200;
constexpr int kMark = 100;

using Pixels = std::set<std::pair<int, int>>;

struct DrawnPixels {
  Pixels points;
  Pixels marks;
};

/// The pixels that drawing into a blank image set, by their value.
DrawnPixels Draw(const ContourHandle& set, int width, int height, double dx, double dy,
                 std::uint8_t mark_value) {
  const ImagePtr image(im_create(1, width, height));
  EXPECT_EQ(ctd_create_img(set.get(), image.get(), dx, dy, kValue, mark_value), 0);
  DrawnPixels drawing;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (image->row[y][x] == kValue) drawing.points.insert({x, y});
      if (image->row[y][x] == kMark) drawing.marks.insert({x, y});
    }
  }
  return drawing;
}

ContourHandle OnePoint(double x, double y, double g) {
  return MakeSet({{{{x, y, g, 0}}, false}});
}

Pixels RowPixels(int y, int from, int to) {
  Pixels pixels;
  for (int x = from; x <= to; ++x)
    pixels.insert({x, y});
  return pixels;
}

TEST(ContourDrawing, WithoutMarkValueOnlyPointsAreDrawn) {
  const ContourHandle set = MakeSet({{{{1.9, 2.1}, {3.5, 4.5}}, false}, {{{0, 0}}, true}});
  const DrawnPixels drawing = Draw(set, 10, 8, 0, 0, 0);
  EXPECT_EQ(drawing.points, (Pixels{{1, 2}, {3, 4}, {0, 0}}));
  EXPECT_TRUE(drawing.marks.empty());
}

TEST(ContourDrawing, OtherPixelsAreLeftAsTheyAre) {
  const ImagePtr image = MakeImage(5, 4, [](int x, int y) { return 10 * y + x; });
  ctd_create_img(OnePoint(2.5, 1.5, 0).get(), image.get(), 0, 0, kValue, 0);
  Grid expected = Painted(5, 4, [](int x, int y) { return 10 * y + x; });
  At(expected, 2, 1) = kValue;
  EXPECT_EQ(GridOf(*image), expected);
}

TEST(ContourDrawing, PointsAreDisplacedBeforeTheyAreTruncated) {
  EXPECT_EQ(Draw(OnePoint(1.75, 2.75, 0), 10, 8, 0.5, 2.25, 0).points, (Pixels{{2, 5}}));
}

TEST(ContourDrawing, PositionsJustBelowZeroTruncateIntoTheImage) {
  EXPECT_EQ(Draw(OnePoint(0.25, 0.5, 0), 10, 8, -1, -1, 0).points, (Pixels{{0, 0}}));
  EXPECT_TRUE(Draw(OnePoint(0.25, 0.5, 0), 10, 8, -1.25, 0, 0).points.empty());
}

TEST(ContourDrawing, PointsOutsideTheImageAreLeftOut) {
  const double nan = std::nan("");
  const double inf = std::numeric_limits<double>::infinity();
  const ContourHandle set =
      MakeSet({{{{10, 1}, {1, 8}, {-1, 1}, {1, -1}, {nan, 1}, {1, inf}, {1e300, 1}}, false}});
  EXPECT_TRUE(Draw(set, 10, 8, 0, 0, 0).points.empty());
}

TEST(ContourDrawing, AMarkIsNinePixelsAlongTheDirection) {
  const DrawnPixels right = Draw(OnePoint(10.5, 20.5, 0), 40, 40, 0, 0, kMark);
  EXPECT_EQ(right.points, (Pixels{{10, 20}}));
  EXPECT_EQ(right.marks, RowPixels(20, 11, 19));
  // Half pi points up, as y grows downwards.
  const DrawnPixels up = Draw(OnePoint(10.5, 20.5, kPi / 2), 40, 40, 0, 0, kMark);
  Pixels column;
  for (int y = 11; y <= 19; ++y)
    column.insert({10, y});
  EXPECT_EQ(up.marks, column);
  // 3-4-5: every fifth step is 3 to the left and 4 down.
  const DrawnPixels slanted = Draw(OnePoint(20.5, 10.5, std::atan2(-4, -3)), 40, 40, 0, 0, kMark);
  EXPECT_EQ(slanted.marks.size(), 9u);
  EXPECT_EQ(slanted.marks.count({17, 14}), 1u);
}

TEST(ContourDrawing, EveryFifthPointOfEachContourIsMarked) {
  TestContour eleven, six;
  for (int k = 0; k < 11; ++k)
    eleven.points.push_back({2.5, 2.5 + 3 * k, 0, 0});
  for (int k = 0; k < 6; ++k)
    six.points.push_back({22.5, 3.5 + 3 * k, 0, 0});
  const DrawnPixels drawing = Draw(MakeSet({eleven, six}), 40, 40, 0, 0, kMark);
  Pixels expected;
  for (const int y : {2, 17, 32})
    expected.merge(RowPixels(y, 3, 11));
  for (const int y : {3, 18})
    expected.merge(RowPixels(y, 23, 31));
  EXPECT_EQ(drawing.marks, expected);
  EXPECT_EQ(drawing.points.size(), 17u);
}

TEST(ContourDrawing, LaterPointsAreDrawnOverAMark) {
  TestContour contour;
  for (int k = 0; k < 5; ++k)
    contour.points.push_back({10.5 + k, 20.5, 0, 0});
  const DrawnPixels drawing = Draw(MakeSet({contour}), 40, 40, 0, 0, kMark);
  EXPECT_EQ(drawing.points, RowPixels(20, 10, 14));
  EXPECT_EQ(drawing.marks, RowPixels(20, 15, 19));
}

TEST(ContourDrawing, MarksAreDrawnOverEarlierPoints) {
  TestContour contour;
  for (int k = 0; k < 6; ++k)
    contour.points.push_back({10.5 + k, 20.5, kPi, 0});  // the sixth points back over the others
  const DrawnPixels drawing = Draw(MakeSet({contour}), 40, 40, 0, 0, kMark);
  EXPECT_EQ(drawing.points, (Pixels{{15, 20}}));
  EXPECT_EQ(drawing.marks, RowPixels(20, 1, 14));
}

TEST(ContourDrawing, AMarkEndsWhereTheUndisplacedPositionLeavesTheImage) {
  // 16.5, 17.5, 18.5, 19.5 lie inside a width of 20 and are drawn 5 further left; from 20.5 on
  // nothing is, though it would be visible.
  const DrawnPixels right = Draw(OnePoint(15.5, 10.5, 0), 20, 20, -5, 0, kMark);
  EXPECT_EQ(right.marks, RowPixels(10, 11, 14));
  // 3, 2 and 1 lie inside, 0 does not.
  const DrawnPixels left = Draw(OnePoint(4, 10.5, kPi), 20, 20, 2, 0, kMark);
  EXPECT_EQ(left.marks, RowPixels(10, 3, 5));
  EXPECT_EQ(left.points, (Pixels{{6, 10}}));
}

TEST(ContourDrawing, TheSameGoesForTheRows) {
  // Up from 3.5: 2.5, 1.5, 0.5, drawn 4 further down.
  const DrawnPixels up = Draw(OnePoint(10.5, 3.5, kPi / 2), 20, 20, 0, 4, kMark);
  EXPECT_EQ(up.marks, (Pixels{{10, 6}, {10, 5}, {10, 4}}));
  // Down from 16.5: 17.5, 18.5, 19.5, drawn 4 further up.
  const DrawnPixels down = Draw(OnePoint(10.5, 16.5, -kPi / 2), 20, 20, 0, -4, kMark);
  EXPECT_EQ(down.marks, (Pixels{{10, 13}, {10, 14}, {10, 15}}));
}

TEST(ContourDrawing, AMarkInsideThatIsDisplacedOutOfTheImageIsHarmless) {
  const DrawnPixels drawing = Draw(OnePoint(10.5, 10.5, 0), 20, 20, 8, 0, kMark);
  EXPECT_EQ(drawing.points, (Pixels{{18, 10}}));
  EXPECT_EQ(drawing.marks, (Pixels{{19, 10}}));
}

TEST(ContourDrawing, ADirectionThatIsNoNumberHasNoMark) {
  const DrawnPixels drawing = Draw(OnePoint(10.5, 10.5, std::nan("")), 20, 20, 0, 0, kMark);
  EXPECT_EQ(drawing.points, (Pixels{{10, 10}}));
  EXPECT_TRUE(drawing.marks.empty());
}

TEST(ContourDrawing, AnEmptySetDrawsNothing) {
  const DrawnPixels drawing = Draw(MakeEmptySet(), 20, 20, 0, 0, kMark);
  EXPECT_TRUE(drawing.points.empty());
  EXPECT_TRUE(drawing.marks.empty());
}

}  // namespace
}  // namespace orvandel::test
