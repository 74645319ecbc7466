#include "shape/refinement/turn_information.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/shape/refinement/rendered_scenes.h"

namespace orvandel::shape::test {
namespace {

constexpr int kSide = 120;
constexpr double kRadius = 40.0;

/// A dark disk on bright ground, its edge 1.4 pixels wide, with a notch of so many degrees, as deep as a tenth
/// of the radius.
RenderedImage Disk(Point centre, double notch_deg, double noise) {
  render::RandomSource random(7);
  RenderedImage image = {kSide, kSide, {}};
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const Point arm = Point{1.0 * x, 1.0 * y} - centre;
      const bool is_notch = std::abs(std::atan2(arm.y, arm.x)) < 0.5 * notch_deg * (kPi / 180.0);
      const double outside = std::sqrt(Dot(arm, arm)) - kRadius * (is_notch ? 0.9 : 1.0);
      const double grey = 120.0 + 80.0 * std::erf(outside) + noise * random.NearlyNormal();
      image.grey.push_back(static_cast<std::uint8_t>(grey + 0.5));
    }
  }
  return image;
}

RefinementModel Learn(const RenderedImage& image, Point origin) {
  return LearnRefinementModel(image.View(), {}, origin);
}

TEST(TurnInformation, IsNotInACircle) {
  for (const Point centre : {Point{60, 60}, Point{58.3, 61.8}}) {
    for (const double noise : {0.0, 2.0, 8.0}) {
      EXPECT_FALSE(Learn(Disk(centre, 0.0, noise), {60, 60}).tells_angle) << noise;
      EXPECT_FALSE(Learn(Disk(centre, 0.0, noise), {20, 90}).tells_angle) << noise;
    }
  }
}

TEST(TurnInformation, IsInACircleWithANotch) {
  for (const double notch_deg : {10.0, 30.0, 90.0})
    EXPECT_TRUE(Learn(Disk({58.3, 61.8}, notch_deg, 2.0), {60, 60}).tells_angle) << notch_deg;
}

TEST(TurnInformation, LeavesACirclesAngleOpen) {
  const RenderedImage image = Disk({60, 60}, 0.0, 1.0);
  const RefinementModel model = Learn(image, {59.5, 59.5});
  const Similarity start = {59.7, 59.4, 0.7, 1.002};
  RefinementWorkspace workspace;
  const Refinement result = RefinePose(model, image.View(), start, {}, workspace);
  ASSERT_EQ(result.outcome, RefinementOutcome::kRefined);
  EXPECT_EQ(result.scene_from_pattern.angle, start.angle);
  EXPECT_TRUE(std::isinf(result.covariance[10]));
  EXPECT_LT(result.covariance[0], 0.01);
  EXPECT_LT(result.covariance[15], 1e-6);
  for (const std::size_t entry : {2U, 6U, 8U, 9U, 11U, 14U})
    EXPECT_EQ(result.covariance[entry], 0.0);
  // Held, it was given.
  const Refinement held = RefinePose(model, image.View(), start, {.fit_angle = false}, workspace);
  EXPECT_EQ(held.covariance[10], 0.0);
}

}  // namespace
}  // namespace orvandel::shape::test
