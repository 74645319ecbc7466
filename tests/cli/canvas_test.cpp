#include "cli/canvas.h"

#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>

#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"
#include "tests/support/images.h"

namespace orvandel::cli::test {
namespace {

constexpr Colour kWhite{255, 255, 255};

ImagePtr BlackImage(int width, int height) {
  return orvandel::test::MakeImage(width, height, [](int, int) { return 0; });
}

// What was drawn, as the image library reads it.
ImagePtr Drawn(const Canvas& canvas) {
  const ScratchFolder folder;
  WriteBytes(folder.File("canvas.png"), canvas.EncodePng());
  return ReadBack(folder.File("canvas.png"));
}

double SumOfGrey(const tImage& image) {
  double sum = 0;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x)
      sum += image.row[y][x];
  }
  return sum;
}

TEST(Canvas, ShowsTheImage) {
  const ImagePtr image = orvandel::test::MakeImage(7, 5, [](int x, int y) { return 20 * x + y; });
  const ImagePtr drawn = Drawn(Canvas(*image, 1, 1.0));
  ASSERT_NE(drawn, nullptr);
  ASSERT_EQ(drawn->width, 7);
  ASSERT_EQ(drawn->height, 5);
  EXPECT_EQ(drawn->row[3][6], 123);
  EXPECT_EQ(drawn->row[0][1], 20);
}

TEST(Canvas, ZoomRepeatsPixelsAndBrightnessDims) {
  const ImagePtr image = orvandel::test::MakeImage(2, 2, [](int x, int) { return 200 * x; });
  const ImagePtr drawn = Drawn(Canvas(*image, 3, 0.5));
  ASSERT_EQ(drawn->width, 6);
  EXPECT_EQ(drawn->row[5][2], 0);
  EXPECT_EQ(drawn->row[5][3], 100);
}

TEST(Canvas, PixelCentresLieAtHalves) {
  Canvas canvas(*BlackImage(9, 9), 1, 1.0);
  canvas.DrawDot({4.5, 2.5}, 1.0, kWhite);
  const ImagePtr drawn = Drawn(canvas);
  EXPECT_EQ(drawn->row[2][4], 255);
  EXPECT_EQ(drawn->row[2][3], 0);
  EXPECT_EQ(drawn->row[1][4], 0);
}

TEST(Canvas, ALineOnAPixelBorderIsSharedByBothRows) {
  Canvas canvas(*BlackImage(40, 9), 1, 1.0);
  canvas.DrawLine({2.5, 4.0}, {37.5, 4.0}, 1.0, kWhite);
  const ImagePtr drawn = Drawn(canvas);
  EXPECT_NEAR(drawn->row[3][20], 127.5, 1);
  EXPECT_NEAR(drawn->row[4][20], 127.5, 1);
}

TEST(Canvas, ALineHasItsWidthInEveryDirection) {
  // Length times width, and a round end of half the width at both ends. Coverage falls linearly
  // over a pixel, which the ends of a thin line feel a little.
  constexpr double kLength = 60;
  constexpr double kWidth = 3;
  constexpr double kArea = kLength * kWidth + 3.14159265 * kWidth * kWidth / 4;
  for (const double angle : {0.0, 0.3, 0.785, 1.2, 1.5708}) {
    Canvas canvas(*BlackImage(100, 100), 1, 1.0);
    const Point from = {20.3, 20.7};
    canvas.DrawLine(from, {from.x + kLength * std::cos(angle), from.y + kLength * std::sin(angle)},
                    kWidth, kWhite);
    EXPECT_NEAR(SumOfGrey(*Drawn(canvas)) / 255, kArea, 0.02 * kArea) << angle;
  }
}

TEST(Canvas, JointsOfAPolylineAreNotBlendedTwice) {
  const std::vector<Point> points = {{5, 5}, {20, 5}, {20, 5}, {35, 5}};
  Canvas joined(*BlackImage(40, 10), 1, 1.0);
  joined.DrawPolyline(points, false, 1.0, kWhite);
  Canvas straight(*BlackImage(40, 10), 1, 1.0);
  straight.DrawLine(points.front(), points.back(), 1.0, kWhite);
  EXPECT_EQ(joined.EncodePng(), straight.EncodePng());
}

TEST(Canvas, StrokesThatCrossAreNotBlendedTwice) {
  const std::vector<Polyline> cross = {{{{5, 20}, {35, 20}}, false}, {{{20, 5}, {20, 35}}, false}};
  Canvas canvas(*BlackImage(40, 40), 1, 1.0);
  canvas.DrawStrokes(cross, 3.0, kWhite, /*opacity=*/0.5);
  const ImagePtr drawn = Drawn(canvas);
  EXPECT_NEAR(drawn->row[20][20], 127.5, 1);
  EXPECT_NEAR(drawn->row[20][10], 127.5, 1);
}

TEST(Canvas, TextIsAsWideAsItSaysAndAsHighAsAsked) {
  constexpr double kHeight = 21;
  Canvas canvas(*BlackImage(300, 60), 1, 1.0);
  canvas.DrawText(20, 20, kHeight, "HE", kWhite);
  const ImagePtr drawn = Drawn(canvas);
  int left = 300, right = 0, top = 60, bottom = 0;
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 300; ++x) {
      if (drawn->row[y][x] < 128) continue;
      left = std::min(left, x);
      right = std::max(right, x);
      top = std::min(top, y);
      bottom = std::max(bottom, y);
    }
  }
  // Strokes are a seventh of the height wide and lie half outside of the letters' box.
  EXPECT_NEAR(left, 20 - kHeight / 14, 1);
  EXPECT_NEAR(top, 20 - kHeight / 14, 1);
  EXPECT_NEAR(bottom, 20 + kHeight + kHeight / 14, 1);
  EXPECT_LT(right, 20 + Canvas::TextWidth("HE", kHeight));
  EXPECT_GT(right, 20 + 0.7 * Canvas::TextWidth("HE", kHeight));
}

TEST(Canvas, AClosedPolylineReturnsToItsStart) {
  const std::vector<Point> points = {{5, 5}, {35, 5}, {35, 35}};
  Canvas canvas(*BlackImage(40, 40), 1, 1.0);
  canvas.DrawPolyline(points, true, 1.0, kWhite);
  EXPECT_GT(Drawn(canvas)->row[20][20], 100);
}

TEST(Canvas, WhatLiesOutsideIsCutOff) {
  constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  Canvas canvas(*BlackImage(20, 20), 1, 1.0);
  const std::string untouched = canvas.EncodePng();
  canvas.DrawLine({-50, -50}, {-10, 70}, 3, kWhite);
  canvas.DrawLine({kNotANumber, 5}, {10, 10}, 3, kWhite);
  canvas.DrawLine({5, 5}, {kInfinite, 10}, 3, kWhite);
  canvas.DrawLine({5, 5}, {1e300, 10}, 3, kWhite);
  canvas.DrawDot({-1e9, 1e9}, 4, kWhite);
  canvas.FillRectangle(18, 30, 10, 10, kWhite, 1.0);
  canvas.FillRectangle(-30, 5, 20, 10, kWhite, 1.0);
  canvas.DrawText(100, 100, 10, "OUT", kWhite);
  EXPECT_EQ(canvas.EncodePng(), untouched);
}

TEST(DistinctColour, NeighboursDiffer) {
  for (int i = 0; i < 200; ++i) {
    const Colour a = DistinctColour(i);
    const Colour b = DistinctColour(i + 1);
    const int difference =
        std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue);
    EXPECT_GT(difference, 100) << i;
  }
}

}  // namespace
}  // namespace orvandel::cli::test
