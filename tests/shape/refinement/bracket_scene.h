#pragma once

#include <gtest/gtest.h>

#include "tests/shape/refinement/rendered_scenes.h"

namespace orvandel::shape::test {

using orvandel::test::UniformRandom;

/// A part that is learnt from one image and refined in others.
class BracketScene : public testing::Test {
 protected:
  BracketScene() : model_(LearnRefinementModel(pattern_.View(), {}, CentreOf(pattern_.View()))) {}

  /// From a start that is off by up to half a pixel, 0.17 degrees and 0.3 per cent.
  Refinement RefineNear(const ImageView& scene, const Similarity& truth,
                        const RefinementOptions& options = {}) {
    return RefinePose(model_, scene, Near(truth, 0.5, 0.003, 0.003, random_), options, workspace_);
  }
  double ErrorOf(const Similarity& found, const Similarity& truth) const {
    return CornerError(found, truth, part_.frame.width, part_.frame.height);
  }

  static constexpr render::Size kSize = {310, 300};
  static constexpr render::Pose kPose = {155.3, 150.6, 30.0, 1.0};
  render::Part part_ = render::MetalBracket();
  RenderedImage pattern_ = TakePatternImage(part_, {.seed = 99});
  RefinementModel model_;
  RefinementWorkspace workspace_;
  UniformRandom random_{12};
};

}  // namespace orvandel::shape::test
