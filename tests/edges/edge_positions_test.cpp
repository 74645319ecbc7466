#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/support/grids.h"
#include "tests/support/image_patterns.h"

// Where edge points come to lie, worked out by hand for straight edges.
namespace orvandel::test {
namespace {

struct StoredPoint {
  int column, row;
  double x, y, g;
};

/// The edge points of an image, row by row.
std::vector<StoredPoint> Detect(const Grid& grid, int threshold) {
  const ImagePtr image = ImageOf(grid);
  CEdgeImgComplement edges;
  EXPECT_EQ(edges.SetSize(Width(grid), Height(grid)), 0);
  EXPECT_EQ(SubCanny(image.get(), threshold, &edges), 0);
  std::vector<StoredPoint> points;
  for (int row = 0; row < edges.height; ++row) {
    for (int column = 0; column < edges.width; ++column) {
      const int cell = row * edges.width + column;
      if (edges.valid[cell])
        points.push_back({column, row, edges.x[cell], edges.y[cell], edges.g[cell]});
    }
  }
  return points;
}

/// Rows that all hold the same grey values.
Grid Columns(const std::vector<int>& values, int height) {
  return Painted(static_cast<int>(values.size()), height,
                 [&](int x, int) { return values[static_cast<std::size_t>(x)]; });
}

/// Expects one point in each of the given rows or columns and nowhere else.
void ExpectColumnOfPoints(const std::vector<StoredPoint>& points, int first_row, int last_row,
                          int column, int sub_x, double g) {
  int row = first_row;
  for (const StoredPoint& p : points) {
    EXPECT_EQ(p.column, column);
    EXPECT_EQ(p.row, row);
    EXPECT_EQ(p.x, column + sub_x / 256.0);
    EXPECT_EQ(p.y, row + 127 / 256.0);  // no shift along the edge
    EXPECT_EQ(p.g, g);
    ++row;
  }
  EXPECT_EQ(row, last_row + 1);
}

TEST(EdgePositions, ASharpStepIsFoundFromBothSidesAtTheSharedPixelBorder) {
  // 0 | 99 from column 6: magnitudes 23 46 46 23 in columns 4..7. Column 5: curvature
  // 2 * (92 - 23 - 46) = 46, shift 23 * 256 / 46 = 128. Column 6: -128, and -1 is stored as 0.
  const auto points = Detect(Columns({0, 0, 0, 0, 0, 0, 99, 99, 99, 99, 99, 99}, 8), 10);
  ASSERT_EQ(points.size(), 2u * 4u);  // rows 2..5
  for (std::size_t i = 0; i < points.size(); i += 2) {
    const int row = 2 + static_cast<int>(i / 2);
    EXPECT_EQ(points[i].column, 5);
    EXPECT_EQ(points[i].row, row);
    EXPECT_EQ(points[i].x, 5 + 255 / 256.0);
    EXPECT_EQ(points[i].y, row + 127 / 256.0);
    EXPECT_EQ(points[i].g, 0.0);
    EXPECT_EQ(points[i + 1].column, 6);
    EXPECT_EQ(points[i + 1].row, row);
    EXPECT_EQ(points[i + 1].x, 6.0);
    EXPECT_EQ(points[i + 1].y, row + 127 / 256.0);
    EXPECT_EQ(points[i + 1].g, 0.0);
  }
}

// 0 0 0 50 200 200 ...: smoothed 0 16 83 150 200, horizontal gradient 16 83 134 117 50 in columns
// 1..5, magnitude 11 58 93 81 35. Column 3: curvature 2 * (186 - 58 - 81) = 94, shift
// 23 * 256 / 94 = 62. Column 4: curvature 68, shift -58 * 256 / 68 = -218, dropped.
const std::vector<int> kSoftStep = {0, 0, 0, 50, 200, 200, 200, 200, 200};

TEST(EdgePositions, ASoftStepIsFoundOnceBetweenPixels) {
  ExpectColumnOfPoints(Detect(Columns(kSoftStep, 7), 10), 2, 4, 3, 127 + 62, 0.0);
}

TEST(EdgePositions, TheMirroredSoftStepTruncatesItsNegativeShiftTowardZero) {
  const std::vector<int> mirrored(kSoftStep.rbegin(), kSoftStep.rend());
  // -62.6 becomes -62. Direction code 128 reads as -128: -pi, not pi.
  ExpectColumnOfPoints(Detect(Columns(mirrored, 7), 10), 2, 4, 5, 127 - 62, -kPi);
}

TEST(EdgePositions, TheTransposedSoftStepShiftsAlongY) {
  const auto points = Detect(Transposed(Columns(kSoftStep, 7)), 10);
  ASSERT_EQ(points.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(points[i].x, 2 + static_cast<int>(i) + 127 / 256.0);
    EXPECT_EQ(points[i].y, 3 + (127 + 62) / 256.0);
    EXPECT_EQ(points[i].g, -kPi / 2);  // bright below: (cos g, -sin g) points down
  }
}

TEST(EdgePositions, BrightAboveHasDirectionHalfPi) {
  const std::vector<int> mirrored(kSoftStep.rbegin(), kSoftStep.rend());
  for (const StoredPoint& p : Detect(Transposed(Columns(mirrored, 7)), 10))
    EXPECT_EQ(p.g, kPi / 2);
}

TEST(EdgePositions, NeighboursBelowTheThresholdCountAsZero) {
  // With threshold 60 column 2 (58) is no candidate: curvature 2 * (186 - 0 - 81) = 210, shift
  // 81 * 256 / 210 = 98. Column 4: 2 * (162 - 93 - 0) = 138, -93 * 256 / 138 = -172, dropped.
  ExpectColumnOfPoints(Detect(Columns(kSoftStep, 7), 60), 2, 4, 3, 127 + 98, 0.0);
}

TEST(EdgePositions, TheThresholdItselfIsEnough) {
  EXPECT_EQ(Detect(Columns(kSoftStep, 7), 93).size(), 3u);
  EXPECT_EQ(Detect(Columns(kSoftStep, 7), 94).size(), 0u);
}

TEST(EdgePositions, TheSecondColumnIsNoCandidateSoTheThirdSeesZeroThere) {
  // Bright from column 2: magnitude 46 in columns 1 and 2, 23 in column 3; column 1 does not count.
  // Column 2: curvature 2 * (92 - 0 - 23) = 138, shift 23 * 256 / 138 = 42.
  ExpectColumnOfPoints(Detect(Columns({0, 0, 99, 99, 99, 99, 99, 99}, 7), 10), 2, 4, 2, 127 + 42,
                       0.0);
}

TEST(EdgePositions, SoDoesTheLastButTwoAtTheRightBorder) {
  ExpectColumnOfPoints(Detect(Columns({0, 0, 0, 0, 0, 0, 99, 99}, 7), 10), 2, 4, 5, 127 - 42, 0.0);
}

TEST(EdgePositions, TheSameHoldsForTheOutermostRows) {
  const auto top = Detect(Transposed(Columns({0, 0, 99, 99, 99, 99, 99, 99}, 7)), 10);
  ASSERT_EQ(top.size(), 3u);
  EXPECT_EQ(top[0].y, 2 + (127 + 42) / 256.0);
  const auto bottom = Detect(Transposed(Columns({0, 0, 0, 0, 0, 0, 99, 99}, 7)), 10);
  ASSERT_EQ(bottom.size(), 3u);
  EXPECT_EQ(bottom[0].y, 5 + (127 - 42) / 256.0);
}

/// A 45 degree step of 90, bright to the upper right of the diagonal column - row = 6. Smoothed by
/// the distance u from it: 0 10 30 60 80 90 for u = -3..2. Both gradients are half the difference
/// over u +- 2: 5 15 30 40 40 30 15 5 for u = -4..3, and the magnitude 4 14 29 39 39 29 14 4.
Grid RisingDiagonal() {
  return Painted(20, 14, [](int x, int y) { return x - y < 6 ? 0 : 90; });
}

/// Without the outermost rows of candidates, which miss a diagonal neighbour.
std::vector<StoredPoint> DetectInRows3To10(const Grid& grid) {
  std::vector<StoredPoint> points = Detect(grid, 1);
  std::erase_if(points, [](const StoredPoint& p) { return p.row < 3 || p.row > 10; });
  return points;
}

TEST(EdgePositions, ADiagonalStepIsFoundSymmetricallyFromBothSides) {
  // u = -1: m1 = 29 up right, m2 = 14 down left; curvature 2 * (78 - 43) = 70, shift
  // -15 * 256 / 70 = -54, so x gets 127 + 54 and y 127 - 54. u = 0 is its mirror image.
  const auto points = DetectInRows3To10(RisingDiagonal());
  for (const StoredPoint& p : points) {
    const int u = p.column - p.row - 6;
    ASSERT_TRUE(u == -1 || u == 0) << p.column << ' ' << p.row;
    const int shift = u == -1 ? 54 : -54;
    EXPECT_EQ(p.x, p.column + (127 + shift) / 256.0);
    EXPECT_EQ(p.y, p.row + (127 - shift) / 256.0);
    EXPECT_EQ(p.g, kPi / 4);  // code 32, toward the upper right
  }
  EXPECT_EQ(points.size(), 2u * 8u);
}

TEST(EdgePositions, TheMirroredDiagonalUsesTheFallingSector) {
  const Grid rising = RisingDiagonal();
  const auto points =
      DetectInRows3To10(Painted(20, 14, [&](int x, int y) { return At(rising, 19 - x, y); }));
  EXPECT_EQ(points.size(), 2u * 8u);
  for (const StoredPoint& p : points) {
    const int u = 19 - p.column - p.row - 6;
    ASSERT_TRUE(u == -1 || u == 0) << p.column << ' ' << p.row;
    // u = -1: m1 = 29 up left, m2 = 14 down right, shift -54 along both axes.
    const int shift = u == -1 ? -54 : 54;
    EXPECT_EQ(p.x, p.column + (127 + shift) / 256.0);
    EXPECT_EQ(p.y, p.row + (127 + shift) / 256.0);
    EXPECT_EQ(p.g, 96 * kTwoPi / 256);
  }
}

}  // namespace
}  // namespace orvandel::test
