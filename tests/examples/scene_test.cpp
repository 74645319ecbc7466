#include "examples/render/scene.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "tests/examples/mass.h"

namespace orvandel::render {
namespace {

constexpr double kSceneGround = 50;

bool SameBytes(const ImagePtr& a, const ImagePtr& b) {
  if (a->width != b->width || a->height != b->height) return false;
  for (int y = 0; y < a->height; ++y) {
    if (std::memcmp(a->row[y], b->row[y], static_cast<std::size_t>(a->width)) != 0) return false;
  }
  return true;
}

Part Box(Point centre, double width, double height, double grey = 250) {
  return {{{Rectangle(centre, width, height), {}, {grey}}}, {101, 81}};
}

double NormalCdf(double x) {
  return std::erfc(-x / std::sqrt(2.0)) / 2;
}

TEST(Scene, AnUprightRectanglesGreysFollowItsCoverage) {
  // Columns from 9.7 to 14.3 and rows from 4.25 to 8.25, where pixel i spans i - 0.5 to i + 0.5.
  const ImagePtr image =
      RenderScene({{Box({}, 4.6, 4), {12, 6.25, 0, 1}}}, {.ground = kSceneGround}, {30, 20});
  EXPECT_EQ(image->row[6][12], 250);
  EXPECT_EQ(image->row[6][9], 50);
  EXPECT_EQ(image->row[6][10], 210);  // 0.8 of the pixel
  EXPECT_EQ(image->row[6][14], 210);
  EXPECT_EQ(image->row[4][12], 100);  // 0.25
  EXPECT_EQ(image->row[8][12], 200);  // 0.75
  EXPECT_EQ(image->row[4][10], 90);   // 0.8 * 0.25
  EXPECT_EQ(image->row[3][12], 50);
}

TEST(Scene, APoseMovesTheMassAsTheTruthSays) {
  const Point corner{40, -25};  // of a part; a small square there marks it
  for (const Pose& pose : {Pose{60.25, 50.5, 0, 1}, Pose{61.3, 48.9, 33.3, 1.2},
                           Pose{59.8, 52.1, -141, 0.6}, Pose{60, 50, 90, 1}}) {
    const ImagePtr scene =
        RenderScene({{Box(corner, 8, 8), pose}}, {.ground = kSceneGround}, {130, 110});
    const double angle = pose.angle_deg * kPi / 180;
    const double c = std::cos(angle), s = std::sin(angle);
    const Mass mass = MassOf(scene, kSceneGround);
    // The greys of about 40 edge pixels are rounded, by up to half a level of 200 times 64 pixels.
    EXPECT_NEAR(mass.centroid.x, pose.x + pose.scale * (c * corner.x - s * corner.y), 0.01);
    EXPECT_NEAR(mass.centroid.y, pose.y + pose.scale * (s * corner.x + c * corner.y), 0.01);
    EXPECT_NEAR(mass.total, 200 * 64 * pose.scale * pose.scale, 20);
  }
}

TEST(Scene, APositiveAngleTurnsClockwiseOnTheScreen) {
  const ImagePtr scene =
      RenderScene({{Box({30, 0}, 6, 6), {50, 40, 90, 1}}}, {.ground = kSceneGround}, {100, 80});
  EXPECT_EQ(scene->row[70][50], 250);  // what pointed right now points down
}

TEST(Scene, ThePatternImageHasThePartsOriginInItsMiddle) {
  Part part = Box({}, 7, 7);
  for (const Size frame : {Size{101, 81}, Size{100, 80}}) {
    part.frame = frame;
    const ImagePtr pattern = RenderPattern(part, {.ground = kSceneGround});
    ASSERT_EQ(pattern->width, frame.width);
    ASSERT_EQ(pattern->height, frame.height);
    const Mass mass = MassOf(pattern, kSceneGround);
    EXPECT_NEAR(mass.centroid.x, (frame.width - 1) / 2.0, 1e-9);
    EXPECT_NEAR(mass.centroid.y, (frame.height - 1) / 2.0, 1e-9);
  }
}

TEST(Scene, AShadedFillTurnsAndScalesWithItsPart) {
  const Part part{{{Rectangle({}, 40, 40), {}, {150, 2, 0}}}, {60, 60}};
  const ImagePtr scene =
      RenderScene({{part, {50, 50, 90, 1.5}}}, {.ground = kSceneGround}, {100, 100});
  // Part point (10, 0) is seen 15 pixels below the part's origin.
  EXPECT_EQ(scene->row[65][50], 170);
  EXPECT_EQ(scene->row[35][50], 130);
  EXPECT_EQ(scene->row[50][65], 150);
}

TEST(Scene, LaterPartsLieOnTop) {
  const Placement low{Box({}, 20, 20, 100), {20, 20, 0, 1}};
  const Placement high{Box({}, 6, 6, 200), {20, 20, 0, 1}};
  EXPECT_EQ(RenderScene({low, high}, {}, {40, 40})->row[20][20], 200);
  EXPECT_EQ(RenderScene({high, low}, {}, {40, 40})->row[20][20], 100);
}

TEST(Scene, ContrastScalesTheDifferenceFromTheGround) {
  const Placement box{Box({}, 20, 20, 90), {20, 20, 0, 1}};
  EXPECT_EQ(RenderScene({box}, {.ground = 50, .contrast = 0.25}, {40, 40})->row[20][20], 60);
  EXPECT_EQ(RenderScene({box}, {.ground = 50, .contrast = -1}, {40, 40})->row[20][20], 10);
  EXPECT_EQ(RenderScene({box}, {.ground = 50, .contrast = 9}, {40, 40})->row[20][20], 255);
}

TEST(Scene, ABlurredStepFollowsTheNormalDistribution) {
  // Bright from x = 29.5, a pixel border, on; far beyond the image to the other sides.
  const Placement half{Box({}, 200, 200, 250), {129.5, 20, 0, 1}};
  for (const double sigma : {1.0, 2.0, 3.0}) {
    const ImagePtr scene =
        RenderScene({half}, {.ground = kSceneGround, .blur_sigma_px = sigma}, {60, 40});
    // Half a level of rounding, and the midpoint rule's error for the sum over whole pixels: a 24th
    // of the density's steepest slope, 0.242 / sigma^2, times the step.
    const double tolerance = 0.5 + 200 * 0.242 / (24 * sigma * sigma);
    for (int x = 0; x < 60; ++x) {
      const double expected = kSceneGround + 200 * NormalCdf((x - 29.5) / sigma);
      EXPECT_NEAR(scene->row[20][x], expected, tolerance) << sigma << ", " << x;
    }
  }
}

TEST(Scene, BlurIsTheSameAlongRowsAndColumns) {
  const Placement dot{Box({}, 1, 1, 250), {20, 20, 0, 1}};
  const ImagePtr scene = RenderScene({dot}, {.ground = 0, .blur_sigma_px = 1.3}, {41, 41});
  EXPECT_GT(scene->row[20][20], scene->row[20][22]);
  EXPECT_GT(scene->row[20][22], 0);
  for (int y = 0; y < 41; ++y) {
    for (int x = 0; x < 41; ++x)
      ASSERT_EQ(scene->row[y][x], scene->row[x][y]);
  }
}

TEST(Scene, LightFadesLinearlyAlongItsDirection) {
  const Imaging right{.ground = 200, .light_falloff = 0.5};
  const ImagePtr fading_right = RenderScene({}, right, {101, 51});
  EXPECT_EQ(fading_right->row[0][0], 200);
  EXPECT_EQ(fading_right->row[50][50], 150);
  EXPECT_EQ(fading_right->row[25][100], 100);
  const Imaging down{.ground = 200, .light_falloff = 0.5, .light_direction_deg = 90};
  const ImagePtr fading_down = RenderScene({}, down, {101, 51});
  EXPECT_EQ(fading_down->row[0][100], 200);
  EXPECT_EQ(fading_down->row[50][0], 100);
}

TEST(Scene, NoiseHasItsMeanAndDeviation) {
  const double sigma = 6;
  const ImagePtr scene = RenderScene({}, {.ground = 120, .noise_sigma = sigma, .seed = 5});
  const double n = 640.0 * 480.0;
  double sum = 0;
  double sum_of_squares = 0;
  for (int y = 0; y < 480; ++y) {
    for (int x = 0; x < 640; ++x) {
      const double value = scene->row[y][x] - 120.0;
      sum += value;
      sum_of_squares += value * value;
    }
  }
  const double deviation = std::sqrt(sigma * sigma + 1.0 / 12);  // rounding adds 1/12
  EXPECT_NEAR(sum / n, 0, 5 * deviation / std::sqrt(n));
  EXPECT_NEAR(std::sqrt(sum_of_squares / n), deviation, 5 * deviation / std::sqrt(2 * n));
}

TEST(Scene, TheSameSeedGivesTheSameBytes) {
  const Placement box{Box({}, 20, 30), {50, 40, 17, 1.3}};
  Imaging imaging{.blur_sigma_px = 0.8, .light_falloff = 0.3, .noise_sigma = 3, .seed = 21};
  const ImagePtr first = RenderScene({box}, imaging, {100, 80});
  EXPECT_TRUE(SameBytes(first, RenderScene({box}, imaging, {100, 80})));
  imaging.seed = 22;
  EXPECT_FALSE(SameBytes(first, RenderScene({box}, imaging, {100, 80})));
}

TEST(Scene, OccludedShareCountsWhatLiesOnTop) {
  const Placement below{Box({}, 90, 90), {50, 40, 0, 1}};
  const Placement box{Box({}, 20, 20), {50, 40, 0, 1}};
  const Placement right_quarter{Box({}, 40, 40), {75, 40, 0, 1}};  // from x = 55 on
  const std::vector<Placement> scene = {below, box, right_quarter};
  EXPECT_NEAR(OccludedShare(scene, 1, {100, 80}), 0.25, 1e-9);
  EXPECT_NEAR(OccludedShare(scene, 2, {100, 80}), 0, 1e-9);
}

TEST(Scene, AHoleInACoverHidesNothing) {
  const Placement box{Box({}, 10, 10), {50, 40, 0, 1}};
  const Part frame{{{Rectangle({}, 60, 60), {Rectangle({}, 20, 20)}, {90}}}, {80, 80}};
  EXPECT_NEAR(OccludedShare({box, {frame, {50, 40, 0, 1}}}, 0, {100, 80}), 0, 1e-9);
}

TEST(Scene, APartOutsideTheImageIsNotOccluded) {
  EXPECT_EQ(OccludedShare({{Box({}, 10, 10), {500, 40, 0, 1}}}, 0, {100, 80}), 0);
}

TEST(Scene, AnImageWithoutPixelsIsNotMade) {
  EXPECT_EQ(RenderScene({}, {}, {0, 10}), nullptr);
  EXPECT_EQ(RenderScene({}, {}, {10, -1}), nullptr);
}

}  // namespace
}  // namespace orvandel::render
