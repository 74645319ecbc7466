#include "examples/render/parts.h"

#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/examples/mass.h"

namespace orvandel::render {
namespace {

constexpr double kPartGround = 60;

TEST(Parts, EveryPartLiesWithinItsFrame) {
  for (const Part& part :
       {MetalBracket(), Cam(), Gear(), Washer(30, 14), HexNut(52), Rod(150, 10), Plate(130, 84)}) {
    const ImagePtr image = RenderPattern(part, {.ground = kPartGround});
    ASSERT_TRUE(image);
    EXPECT_GT(MassOf(image, kPartGround).total, 0);
    for (int x = 0; x < image->width; ++x) {
      EXPECT_EQ(image->row[0][x], 60);
      EXPECT_EQ(image->row[image->height - 1][x], 60);
    }
    for (int y = 0; y < image->height; ++y) {
      EXPECT_EQ(image->row[y][0], 60);
      EXPECT_EQ(image->row[y][image->width - 1], 60);
    }
  }
}

TEST(Parts, TheBracketInASceneIsThePatternUnderThePose) {
  const ImagePtr pattern = RenderPattern(MetalBracket(), {.ground = kPartGround});
  const Mass in_pattern = MassOf(pattern, kPartGround);
  const Point centre{(pattern->width - 1) / 2.0, (pattern->height - 1) / 2.0};
  const Point p = in_pattern.centroid - centre;
  for (const double angle_deg : {0.0, 28.6, 90.0, -171.3, 118.4}) {
    for (const double scale : {0.6, 1.0, 1.6}) {
      const Pose pose{322.8, 243.1, angle_deg, scale};
      const ImagePtr scene = RenderScene({{MetalBracket(), pose}}, {.ground = kPartGround});
      const Mass in_scene = MassOf(scene, kPartGround);
      const double angle = angle_deg * kPi / 180;
      const double c = std::cos(angle), s = std::sin(angle);
      EXPECT_NEAR(in_scene.centroid.x, pose.x + scale * (c * p.x - s * p.y), 0.01) << angle_deg;
      EXPECT_NEAR(in_scene.centroid.y, pose.y + scale * (s * p.x + c * p.y), 0.01) << angle_deg;
      EXPECT_NEAR(in_scene.total / (scale * scale * in_pattern.total), 1, 1e-3)
          << angle_deg << ", " << scale;
    }
  }
}

TEST(Parts, TheBracketLooksDifferentAtEveryAngle) {
  const auto view = [](double angle_deg) {
    return RenderScene({{MetalBracket(), {120, 120, angle_deg, 1}}}, {.ground = kPartGround},
                       {241, 241});
  };
  const ImagePtr unrotated = view(0);
  for (int angle_deg = 15; angle_deg < 360; angle_deg += 15) {
    const ImagePtr rotated = view(angle_deg);
    int differing = 0;
    for (int y = 0; y < 241; ++y) {
      for (int x = 0; x < 241; ++x)
        differing += std::abs(unrotated->row[y][x] - rotated->row[y][x]) > 50 ? 1 : 0;
    }
    EXPECT_GT(differing, 1500) << angle_deg;  // pixels, of about 18000 that show the part
  }
}

}  // namespace
}  // namespace orvandel::render
