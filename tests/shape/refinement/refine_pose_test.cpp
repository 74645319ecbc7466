#include "shape/refinement/refine_pose.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/shape/refinement/rendered_scenes.h"

namespace orvandel::shape::test {
namespace {

using orvandel::test::UniformRandom;

class RenderedBracket : public testing::Test {
 protected:
  RenderedBracket()
      : model_(LearnRefinementModel(pattern_.View(), {}, CentreOf(pattern_.View()))) {}

  Refinement RefineNear(const render::Pose& pose, const Camera& camera) {
    const Picture scene = TakePicture(part_, pose, kSize, camera);
    const Similarity start = Near(TruthOf(pose), 0.5, 0.003, 0.003, random_);
    return RefinePose(model_, scene.View(), start, {}, workspace_);
  }
  double ErrorOf(const Refinement& result, const render::Pose& pose) const {
    return CornerError(result.scene_from_pattern, TruthOf(pose), part_.frame.width,
                       part_.frame.height);
  }

  static constexpr render::Size kSize = {310, 300};
  render::Part part_ = render::MetalBracket();
  Picture pattern_ = TakePatternPicture(part_, {.seed = 99});
  RefinementModel model_;
  RefinementWorkspace workspace_;
  UniformRandom random_{12};
};

// Noise of 0.6 and rounding leave about 0.002 pixels at the corners of a part of this size.
TEST_F(RenderedBracket, IsFoundToAHundredthOfAPixelAtAnyPose) {
  for (int i = 0; i < 12; ++i) {
    const render::Pose pose = {random_.Real(150, 160), random_.Real(145, 155),
                               random_.Real(-180, 180), 1.0};
    const Refinement result = RefineNear(pose, {});
    EXPECT_EQ(result.outcome, RefinementOutcome::kRefined);
    EXPECT_LT(ErrorOf(result, pose), 0.01) << i;
  }
}

TEST_F(RenderedBracket, IsFoundAtOtherScales) {
  for (const double scale : {0.5, 0.7, 0.9, 1.2}) {
    const render::Pose pose = {155.3, 150.6, random_.Real(-180, 180), scale};
    const Refinement result = RefineNear(pose, {.optics_px = 0.7 * scale});
    EXPECT_LT(ErrorOf(result, pose), 0.01) << scale;
  }
}

TEST_F(RenderedBracket, HasTheGainOfItsContrast) {
  const render::Pose pose = {155.3, 150.6, 30, 1.0};
  for (const double contrast : {0.5, 1.0}) {
    const Refinement result = RefineNear(pose, {.contrast = contrast});
    EXPECT_NEAR(result.gain, contrast, 0.01);
    EXPECT_LT(ErrorOf(result, pose), 0.01);
  }
}

TEST_F(RenderedBracket, ComesBackAsTheStartWhenTheStartIsNoPose) {
  const Picture scene = TakePicture(part_, {155, 150, 0, 1}, kSize);
  for (const Similarity& start : {Similarity{std::nan(""), 0, 0, 1}, Similarity{155, 150, 0, 0},
                                  Similarity{155, 150, 0, -1}, Similarity{-5000, 240, 0, 1}}) {
    const Refinement result = RefinePose(model_, scene.View(), start, {}, workspace_);
    EXPECT_EQ(result.outcome, RefinementOutcome::kTooFewPixels);
    EXPECT_EQ(result.scene_from_pattern.y, start.y);
  }
}

}  // namespace
}  // namespace orvandel::shape::test
