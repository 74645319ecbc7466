#include "shape/refinement/refine_pose.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/shape/refinement/bracket_scene.h"

namespace orvandel::shape::test {
namespace {

using RefinePoseTest = BracketScene;

// Noise of 0.6 and rounding leave about 0.002 pixels at the corners of a part of this size, in scene and
// pattern each.
constexpr double kFewDeviations = 0.01;

TEST_F(RefinePoseTest, FindsThePartToAHundredthOfAPixelAtAnyPose) {
  for (int i = 0; i < 8; ++i) {
    const render::Pose pose = {random_.Real(150, 160), random_.Real(145, 155),
                               random_.Real(-180, 180), 1.0};
    const RenderedImage scene = TakeImage(part_, pose, kSize);
    const Refinement result = RefineNear(scene.View(), TruthOf(pose));
    EXPECT_EQ(result.outcome, RefinementOutcome::kRefined);
    EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(pose)), kFewDeviations) << i;
    EXPECT_GT(result.explained_share, 0.99);
  }
}

TEST_F(RefinePoseTest, FindsThePartAtOtherScales) {
  for (const double scale : {0.5, 0.7, 0.9, 1.2, 1.5}) {
    const render::Pose pose = {165.3, 170.6, random_.Real(-180, 180), scale};
    const RenderedImage scene = TakeImage(part_, pose, {340, 340}, {.optics_px = 0.7 * scale});
    const Refinement result = RefineNear(scene.View(), TruthOf(pose));
    EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(pose)), kFewDeviations) << scale;
  }
}

TEST_F(RefinePoseTest, ComesBackFromAStartThatIsFarOffByWayOfACoarserImage) {
  const RenderedImage scene = TakeImage(part_, kPose, kSize);
  for (int i = 0; i < 8; ++i) {
    const Similarity start = Near(TruthOf(kPose), 2.0, 0.03, 0.02, random_);
    const Refinement result =
        RefinePose(model_, scene.View(), start, {.start_error_px = 5.0}, workspace_);
    EXPECT_EQ(result.outcome, RefinementOutcome::kRefined);
    EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(kPose)), kFewDeviations);
  }
}

TEST_F(RefinePoseTest, GivesTheStartBackWhereThePartIsNot) {
  const RenderedImage scene = TakeImage(part_, kPose, kSize);
  Similarity start = TruthOf(kPose);
  start.x += 25.0;
  start.angle += 1.0;
  const Refinement result = RefinePose(model_, scene.View(), start, {}, workspace_);
  EXPECT_NE(result.outcome, RefinementOutcome::kRefined);
  EXPECT_EQ(result.scene_from_pattern, start);
}

TEST_F(RefinePoseTest, FindsAPartThatLiesPartlyOutside) {
  for (const double x : {40.0, 270.0}) {
    const render::Pose pose = {x, 150.6, 20.0, 1.0};
    const RenderedImage scene = TakeImage(part_, pose, kSize);
    const Refinement result = RefineNear(scene.View(), TruthOf(pose));
    EXPECT_EQ(result.outcome, RefinementOutcome::kRefined);
    // Two thirds of the outline, all on one side, leave about twice the error at the far corners.
    EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(pose)), 2.0 * kFewDeviations);
  }
}

TEST_F(RefinePoseTest, HoldsTheAngleAndScaleThatAreNotToBeFitted) {
  const RenderedImage scene = TakeImage(part_, kPose, kSize);
  Similarity start = TruthOf(kPose);
  start.x += 0.3;
  const Refinement result =
      RefinePose(model_, scene.View(), start, {.fit_angle = false, .fit_scale = false}, workspace_);
  EXPECT_EQ(result.scene_from_pattern.angle, start.angle);
  EXPECT_EQ(result.scene_from_pattern.scale, start.scale);
  EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(kPose)), kFewDeviations);
  for (const std::size_t entry : {2U, 3U, 8U, 10U, 15U})
    EXPECT_EQ(result.covariance[entry], 0.0);
}

TEST_F(RefinePoseTest, GivesAStartThatIsNoPoseBack) {
  const RenderedImage scene = TakeImage(part_, kPose, kSize);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Similarity& start : {Similarity{nan, 0, 0, 1}, Similarity{155, 150, 0, 0},
                                  Similarity{155, 150, 0, -1}, Similarity{-5000, 150, 0, 1},
                                  Similarity{1e300, 150, 0, 1}, Similarity{155, 150, 0, 1e-6}}) {
    const Refinement result = RefinePose(model_, scene.View(), start, {}, workspace_);
    EXPECT_NE(result.outcome, RefinementOutcome::kRefined);
    EXPECT_EQ(result.scene_from_pattern.y, start.y);
    EXPECT_EQ(result.scene_from_pattern.scale, start.scale);
  }
}

TEST_F(RefinePoseTest, GivesTheStartBackInImagesThatShowNothing) {
  const Similarity start = {20.0, 20.0, 0.1, 0.2};
  for (const int side : {1, 2, 5, 8, 41}) {
    for (const int grey : {0, 128, 255}) {
      const RenderedImage flat = {side, side,
                                  std::vector<std::uint8_t>(static_cast<std::size_t>(side * side),
                                                            static_cast<std::uint8_t>(grey))};
      const Refinement result = RefinePose(model_, flat.View(), start, {}, workspace_);
      EXPECT_NE(result.outcome, RefinementOutcome::kRefined) << side << ' ' << grey;
      EXPECT_EQ(result.scene_from_pattern, start);
    }
  }
  EXPECT_EQ(RefinePose(model_, ImageView8{}, start, {}, workspace_).outcome,
            RefinementOutcome::kTooFewPixels);
}

TEST_F(RefinePoseTest, GivesTheStartBackForAPatternWithoutEdges) {
  const RenderedImage flat = {40, 40, std::vector<std::uint8_t>(1600, 90)};
  const RefinementModel model = LearnRefinementModel(flat.View(), {}, {19.5, 19.5});
  const RenderedImage scene = TakeImage(part_, kPose, kSize);
  const Refinement result = RefinePose(model, scene.View(), TruthOf(kPose), {}, workspace_);
  EXPECT_EQ(result.outcome, RefinementOutcome::kTooFewPixels);
}

TEST_F(RefinePoseTest, FindsAPartWhoseGreysAreClipped) {
  Exposure exposure = Expose(part_, kPose, kSize);
  for (double& grey : exposure.grey)
    grey = 1.9 * grey - 40.0;  // the lighter face becomes 255, the darkest places 0
  const RenderedImage scene = Develop(exposure, 0.6, 5);
  ASSERT_GT(std::count(scene.grey.begin(), scene.grey.end(), 255), 1000);
  const Refinement result = RefineNear(scene.View(), TruthOf(kPose));
  // An edge that loses a fifth of its height at one side seems to move by a quarter of its width of 0.8
  // pixels, outwards all around.
  EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(kPose)), 0.2);
}

}  // namespace
}  // namespace orvandel::shape::test
