#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/shape/refinement/bracket_scene.h"
#include "tests/support/same_bits.h"
#include "tests/support/simd_levels.h"

namespace orvandel::shape::test {
namespace {

using orvandel::test::SameBits;

/// The answer must follow what is done to the scene. Other paths through the same arithmetic differ by
/// roundings of single precision, some 1e-6 pixels in a pose.
constexpr double kFloatRounding = 1e-5;

void ExpectSameBits(const Refinement& a, const Refinement& b) {
  EXPECT_TRUE(SameBits(a.scene_from_pattern.x, b.scene_from_pattern.x));
  EXPECT_TRUE(SameBits(a.scene_from_pattern.y, b.scene_from_pattern.y));
  EXPECT_TRUE(SameBits(a.scene_from_pattern.angle, b.scene_from_pattern.angle));
  EXPECT_TRUE(SameBits(a.scene_from_pattern.scale, b.scene_from_pattern.scale));
  EXPECT_TRUE(SameBits(a.rms_residual, b.rms_residual));
  for (std::size_t i = 0; i < a.covariance.size(); ++i)
    EXPECT_TRUE(SameBits(a.covariance[i], b.covariance[i])) << i;
}

class Equivariance : public BracketScene {
 protected:
  Refinement Refine(const ImageView& scene, const Similarity& start,
                    const RefinementOptions& options = {}) {
    return RefinePose(model_, scene, start, options, workspace_);
  }

  RenderedImage scene_ = TakeImage(part_, kPose, kSize);
  Similarity start_ = Near(TruthOf(kPose), 0.5, 0.003, 0.003, random_);
};

TEST_F(Equivariance, AShiftByWholePixelsShiftsThePose) {
  // The same pixels seen through windows that begin at other places.
  const Refinement whole = Refine(scene_.View(), start_);
  for (const auto& [left, top] : {std::pair{3, 0}, {0, 7}, {16, 11}}) {
    const ImageView8 window = {scene_.grey.data() + top * scene_.width + left, scene_.width - left,
                               scene_.height - top, scene_.width};
    Similarity start = start_;
    start.x -= left;
    start.y -= top;
    const Refinement shifted = Refine(window, start);
    EXPECT_NEAR(shifted.scene_from_pattern.x, whole.scene_from_pattern.x - left, kFloatRounding);
    EXPECT_NEAR(shifted.scene_from_pattern.y, whole.scene_from_pattern.y - top, kFloatRounding);
    EXPECT_NEAR(shifted.scene_from_pattern.angle, whole.scene_from_pattern.angle,
                kFloatRounding / 100);
    EXPECT_NEAR(shifted.scene_from_pattern.scale, whole.scene_from_pattern.scale,
                kFloatRounding / 100);
  }
}

TEST_F(Equivariance, AQuarterTurnTurnsThePose) {
  RenderedImage rotated = {scene_.height, scene_.width, scene_.grey};
  for (int y = 0; y < scene_.height; ++y) {
    for (int x = 0; x < scene_.width; ++x)
      rotated.grey[static_cast<std::size_t>(x * rotated.width + scene_.height - 1 - y)] =
          scene_.grey[static_cast<std::size_t>(y * scene_.width + x)];
  }
  const auto turn = [&](const Similarity& pose) {
    return Similarity{scene_.height - 1 - pose.y, pose.x, pose.angle + kPi / 2, pose.scale};
  };
  const Refinement whole = Refine(scene_.View(), start_);
  const Refinement result = Refine(rotated.View(), turn(start_));
  EXPECT_LT(ErrorOf(result.scene_from_pattern, turn(whole.scene_from_pattern)), kFloatRounding);
  EXPECT_NEAR(result.covariance[0], whole.covariance[5], 1e-3 * whole.covariance[5]);
  EXPECT_NEAR(result.covariance[5], whole.covariance[0], 1e-3 * whole.covariance[0]);
  EXPECT_NEAR(result.covariance[10], whole.covariance[10], 1e-3 * whole.covariance[10]);
}

TEST_F(Equivariance, AddingAGreyLevelChangesTheBiasAlone) {
  RenderedImage brighter = scene_;
  for (std::uint8_t& grey : brighter.grey)
    grey = static_cast<std::uint8_t>(grey + 20);
  const Refinement before = Refine(scene_.View(), start_);
  const Refinement after = Refine(brighter.View(), start_);
  EXPECT_LT(ErrorOf(after.scene_from_pattern, before.scene_from_pattern), kFloatRounding);
  EXPECT_NEAR(after.gain, before.gain, 1e-5);
  EXPECT_NEAR(after.bias, before.bias + 20.0, 1e-3);
}

TEST_F(Equivariance, SixteenBitsGiveTheSamePoseAndAHigherGain) {
  std::vector<std::uint16_t> deep;
  for (const std::uint8_t grey : scene_.grey)
    deep.push_back(static_cast<std::uint16_t>(256 * grey));
  const ImageView16 view = {deep.data(), scene_.width, scene_.height, 2 * scene_.width};
  const Refinement before = Refine(scene_.View(), start_);
  const Refinement after = Refine(view, start_);
  EXPECT_LT(ErrorOf(after.scene_from_pattern, before.scene_from_pattern), kFloatRounding);
  EXPECT_NEAR(after.gain, 256.0 * before.gain, 1e-3);
}

TEST_F(Equivariance, AnInvertedSceneIsFoundWhereItMayBe) {
  RenderedImage inverted = scene_;
  for (std::uint8_t& grey : inverted.grey)
    grey = static_cast<std::uint8_t>(255 - grey);
  const Refinement before = Refine(scene_.View(), start_);
  for (const EdgePolarity polarity : {EdgePolarity::kReversed, EdgePolarity::kEither}) {
    const Refinement result = Refine(inverted.View(), start_, {.polarity = polarity});
    EXPECT_EQ(result.outcome, RefinementOutcome::kRefined);
    EXPECT_LT(ErrorOf(result.scene_from_pattern, before.scene_from_pattern), kFloatRounding);
    EXPECT_NEAR(result.gain, -before.gain, 1e-4);
  }
  EXPECT_NE(Refine(inverted.View(), start_).outcome, RefinementOutcome::kRefined);
}

TEST_F(Equivariance, EveryLevelOfVectorInstructionsGivesTheSameBits) {
  const Refinement expected = Refine(scene_.View(), start_);
  for (const SimdLevel level : SupportedSimdLevels()) {
    const orvandel::test::ForcedSimdLevel forced(level);
    ExpectSameBits(Refine(scene_.View(), start_), expected);
  }
}

TEST_F(Equivariance, WhatTheWorkspaceHeldChangesNoBit) {
  RefinementWorkspace fresh;
  const Refinement expected = RefinePose(model_, scene_.View(), start_, {}, fresh);
  const RenderedImage other = TakeImage(part_, {150, 140, 70, 0.6}, kSize, {.noise = 9.0});
  Refine(other.View(), {150.3, 140.2, 70 * kPi / 180, 0.6}, {.start_error_px = 4.0});
  Refine(other.View(), {10.0, 140.2, 1.0, 0.9});
  ExpectSameBits(Refine(scene_.View(), start_), expected);
}

}  // namespace
}  // namespace orvandel::shape::test
