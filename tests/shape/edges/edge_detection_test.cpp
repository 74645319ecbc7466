// What edge detection promises whatever the image.

#include "shape/edges/edge_detection.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "tests/shape/edges/edge_images.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

using shape::edges::EdgePoint;
using shape::edges::EdgePoints;

template <typename Pixel>
std::vector<EdgePoint> PointsOf(const ImageViewOf<Pixel>& image, float least_strength) {
  shape::edges::EdgeWorkspace workspace;
  EdgePoints points;
  DetectEdgePoints(image, least_strength, workspace, points);
  return {points.All().begin(), points.All().end()};
}

bool AreSame(std::span<const EdgePoint> a, std::span<const EdgePoint> b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size_bytes()) == 0);
}

OwnedImage<std::uint8_t> Noise(int width, int height, std::uint32_t seed, int padding = 0) {
  UniformRandom random(seed);
  OwnedImage<std::uint8_t> image(width, height, padding);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      image.At(x, y) = static_cast<std::uint8_t>(random.Integer(0, 255));
  }
  return image;
}

TEST(EdgeDetection, FlatImagesHaveNoPoints) {
  for (const double grey : {0.0, 77.0, 255.0}) {
    const auto image = PaintedImage<std::uint8_t>(64, 48, [&](int, int) { return grey; });
    EXPECT_TRUE(PointsOf(image.View(), 0.0F).empty());
  }
}

TEST(EdgeDetection, EvenSlopesHaveNoPeak) {
  const auto image = PaintedImage<std::uint8_t>(64, 48, [](int x, int y) { return 2 * x + y; });
  EXPECT_TRUE(PointsOf(image.View(), 0.0F).empty());
}

TEST(EdgeDetection, ImagesWithoutRoomForTheBorderHaveNoPoints) {
  for (const auto& [width, height] : {std::pair{1, 1}, {6, 40}, {40, 6}, {2, 3}}) {
    const auto image = Noise(width, height, 3);
    shape::edges::EdgeWorkspace workspace;
    EdgePoints points;
    DetectEdgePoints(image.View(), 0.0F, workspace, points);
    EXPECT_TRUE(points.All().empty());
    EXPECT_EQ(points.NumRows(), height);
  }
}

TEST(EdgeDetection, AnImageWithoutPixelsHasNoRows) {
  shape::edges::EdgeWorkspace workspace;
  EdgePoints points;
  DetectEdgePoints(ImageView8{}, 1.0F, workspace, points);
  EXPECT_TRUE(points.All().empty());
  EXPECT_EQ(points.NumRows(), 0);
}

TEST(EdgeDetection, TheSmallestImageHasAPointInItsMiddle) {
  const auto image = PaintedImage<std::uint8_t>(7, 7, [](int x, int) {
    return x < 3 ? 0 : x == 3 ? 100 : 200;
  });
  const std::vector<EdgePoint> points = PointsOf(image.View(), 12.0F);
  ASSERT_EQ(points.size(), 1U);
  EXPECT_EQ(points[0].x, 3.0F);
  EXPECT_EQ(points[0].y, 3.0F);
}

TEST(EdgeDetection, DirectionsPointToTheBrighterSide) {
  const auto right =
      PaintedImage<std::uint8_t>(32, 32, [](int x, int) { return x < 16 ? 20 : 220; });
  const auto left =
      PaintedImage<std::uint8_t>(32, 32, [](int x, int) { return x < 16 ? 220 : 20; });
  const auto down =
      PaintedImage<std::uint8_t>(32, 32, [](int, int y) { return y < 16 ? 20 : 220; });
  const auto up = PaintedImage<std::uint8_t>(32, 32, [](int, int y) { return y < 16 ? 220 : 20; });
  for (const EdgePoint& p : PointsOf(right.View(), 12.0F))
    EXPECT_EQ(p.direction, 0.0F);
  for (const EdgePoint& p : PointsOf(left.View(), 12.0F))
    EXPECT_FLOAT_EQ(p.direction, static_cast<float>(kPi));
  for (const EdgePoint& p : PointsOf(down.View(), 12.0F))
    EXPECT_FLOAT_EQ(p.direction, static_cast<float>(kPi / 2));
  for (const EdgePoint& p : PointsOf(up.View(), 12.0F))
    EXPECT_FLOAT_EQ(p.direction, static_cast<float>(-kPi / 2));
}

TEST(EdgeDetection, DirectionsLieInOneTurn) {
  UniformRandom random(5);
  OwnedImage<std::uint16_t> image(200, 100);
  for (int y = 0; y < 100; ++y) {
    // Steps to the left that rise by a single level from row to row: gradients a hair off the
    // negative x axis.
    for (int x = 0; x < 200; ++x)
      image.At(x, y) =
          static_cast<std::uint16_t>((x < 100 ? 65000 : 100) + (y % 3) * random.Integer(0, 1));
  }
  const std::vector<EdgePoint> points = PointsOf(image.View(), 1000.0F);
  ASSERT_FALSE(points.empty());
  for (const EdgePoint& p : points) {
    EXPECT_GT(p.direction, static_cast<float>(-kPi));
    EXPECT_LE(p.direction, static_cast<float>(kPi));
  }
}

TEST(EdgeDetection, InvertingTheImageTurnsDirectionsAndNothingElse) {
  auto image = Noise(150, 90, 6);
  const std::vector<EdgePoint> points = PointsOf(image.View(), 20.0F);
  for (int y = 0; y < image.Height(); ++y) {
    for (int x = 0; x < image.Width(); ++x)
      image.At(x, y) = static_cast<std::uint8_t>(255 - image.At(x, y));
  }
  const std::vector<EdgePoint> inverted = PointsOf(image.View(), 20.0F);
  ASSERT_EQ(inverted.size(), points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_EQ(inverted[i].x, points[i].x);
    EXPECT_EQ(inverted[i].y, points[i].y);
    EXPECT_EQ(inverted[i].strength, points[i].strength);
    EXPECT_NEAR(std::fabs(std::remainder(inverted[i].direction - points[i].direction, kTwoPi)), kPi,
                1e-6);
  }
}

TEST(EdgeDetection, AThresholdEqualToAReportedStrengthKeepsThePoint) {
  const auto image = Noise(60, 40, 7);
  const std::vector<EdgePoint> all = PointsOf(image.View(), 0.0F);
  ASSERT_GT(all.size(), 100U);
  for (std::size_t i = 0; i < all.size(); i += 7) {
    const float strength = all[i].strength;
    const auto reaches = [](float least) {
      return [least](const EdgePoint& p) { return p.strength >= least; };
    };
    const float above = std::nextafter(strength, 1e9F);
    EXPECT_EQ(PointsOf(image.View(), strength).size(),
              static_cast<std::size_t>(std::count_if(all.begin(), all.end(), reaches(strength))));
    EXPECT_EQ(PointsOf(image.View(), above).size(),
              static_cast<std::size_t>(std::count_if(all.begin(), all.end(), reaches(above))));
  }
}

TEST(EdgeDetection, NoStrengthIsBeyondAnyThreshold) {
  const auto image = Noise(60, 40, 8);
  for (const float least : {136.0F, 1e6F, 3e38F, INFINITY})
    EXPECT_TRUE(PointsOf(image.View(), least).empty()) << least;
}

TEST(EdgeDetection, TheSameGreyValuesInSixteenBitsGiveTheSameBits) {
  const auto image = Noise(203, 90, 9);
  OwnedImage<std::uint16_t> deep(203, 90);
  for (int y = 0; y < 90; ++y) {
    for (int x = 0; x < 203; ++x)
      deep.At(x, y) = image.At(x, y);
  }
  for (const float least : {0.0F, 5.0F, 12.0F, 33.3F})
    EXPECT_TRUE(AreSame(PointsOf(image.View(), least), PointsOf(deep.View(), least)));
}

TEST(EdgeDetection, PixelsBetweenTheRowsAreOfNoAccount) {
  auto wide = Noise(300, 50, 10);
  auto padded = Noise(120, 50, 11, 37);
  for (int y = 0; y < 50; ++y) {
    for (int x = 0; x < 120; ++x)
      padded.At(x, y) = wide.At(x + 13, y);
  }
  const ImageView8 window = {&wide.At(13, 0), 120, 50, wide.View().stride};
  EXPECT_TRUE(AreSame(PointsOf(window, 12.0F), PointsOf(padded.View(), 12.0F)));
}

TEST(EdgeDetection, AUsedWorkspaceChangesNoBit) {
  shape::edges::EdgeWorkspace workspace;
  EdgePoints points;
  DetectEdgePoints(Noise(700, 30, 12).View(), 0.0F, workspace, points);
  OwnedImage<std::uint16_t> deep(90, 70);
  UniformRandom random(13);
  for (int y = 0; y < 70; ++y) {
    for (int x = 0; x < 90; ++x)
      deep.At(x, y) = static_cast<std::uint16_t>(random.Integer(0, 65535));
  }
  DetectEdgePoints(deep.View(), 0.0F, workspace, points);
  EXPECT_TRUE(AreSame(points.All(), PointsOf(deep.View(), 0.0F)));
  const auto image = Noise(64, 64, 14);
  DetectEdgePoints(image.View(), 12.0F, workspace, points);
  EXPECT_TRUE(AreSame(points.All(), PointsOf(image.View(), 12.0F)));
}

TEST(EdgeDetection, RowsListTheirPointsFromLeftToRight) {
  const auto image = Noise(101, 67, 15);
  shape::edges::EdgeWorkspace workspace;
  EdgePoints points;
  DetectEdgePoints(image.View(), 12.0F, workspace, points);
  ASSERT_EQ(points.NumRows(), 67);
  std::size_t count = 0;
  for (std::int32_t y = 0; y < 67; ++y) {
    float last_x = 0;
    for (const EdgePoint& p : points.InRow(y)) {
      EXPECT_LE(std::fabs(p.y - static_cast<float>(y)), 0.5F);
      EXPECT_GE(p.x, last_x);
      last_x = p.x;
    }
    count += points.InRow(y).size();
    if (y < 3 || y > 63) {
      EXPECT_TRUE(points.InRow(y).empty()) << y;
    }
  }
  EXPECT_EQ(count, points.All().size());
}

TEST(EdgeDetection, AWindowHasTheWholeImagesPoints) {
  const auto image = Noise(160, 80, 16);
  const ImageView8 whole = image.View();
  shape::edges::EdgeWorkspace workspace;
  EdgePoints points;
  DetectEdgePoints(whole, 12.0F, workspace, points);
  constexpr int kLeft = 17;
  constexpr int kTop = 3;
  const ImageView8 window = {whole.Row(kTop) + kLeft, 120, 60, whole.stride};
  EdgePoints points_of_window;
  DetectEdgePoints(window, 12.0F, workspace, points_of_window);
  for (int y = 3; y < 57; ++y) {
    std::vector<EdgePoint> expected;
    for (const EdgePoint& p : points.InRow(y + kTop)) {
      const long column = std::lround(p.x) - kLeft;
      if (column > 4 && column < 115) expected.push_back(p);
    }
    std::vector<EdgePoint> actual;
    for (const EdgePoint& p : points_of_window.InRow(y)) {
      if (std::lround(p.x) > 4 && std::lround(p.x) < 115) actual.push_back(p);
    }
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
      EXPECT_NEAR(actual[i].x + kLeft, expected[i].x, 1.6e-5F);  // floats near 160 resolve 1.5e-5
      EXPECT_NEAR(actual[i].y + kTop, expected[i].y, 1.6e-5F);
      EXPECT_EQ(actual[i].direction, expected[i].direction);
      EXPECT_EQ(actual[i].strength, expected[i].strength);
    }
  }
}

}  // namespace
}  // namespace orvandel::test
