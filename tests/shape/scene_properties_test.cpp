// What is done to a scene is done to the answer: turn, shift, scale, inversion, another light. And the covariance is that
// of the answers to many noises.

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "shape/model/textures.h"
#include "tests/shape/matches.h"
#include "tests/shape/rendered_scenes.h"
#include "tests/support/covariance.h"

namespace orvandel::shape {
namespace {

using render::Part;
using test::CornerError;
using test::DeepImage;
using test::FindIn;
using test::GreyImage;
using test::IsCovariance;
using test::NormalizedSquare;
using test::SceneOf;

/// The scene rotated by a quarter, clockwise on the screen: (x, y) goes to (height - 1 - y, x).
GreyImage RotatedByAQuarter(const GreyImage& image) {
  GreyImage rotated(image.height, image.width);
  const auto* const pixels = image.pixels.data();
  for (std::int32_t y = 0; y < rotated.height; ++y) {
    for (std::int32_t x = 0; x < rotated.width; ++x)
      rotated.At(x, y) = pixels[(image.height - 1 - x) * image.width + y];
  }
  return rotated;
}

Similarity RotatedByAQuarter(const Similarity& pose, std::int32_t height) {
  return {height - 1 - pose.y, pose.x, pose.angle + 0.5 * kPi, pose.scale};
}

/// A function of each grey value, as 16 bits.
template <typename Function>
DeepImage Developed(const GreyImage& image, const Function& function) {
  DeepImage deep(image.width, image.height);
  for (std::size_t i = 0; i < deep.pixels.size(); ++i)
    deep.pixels[i] = static_cast<std::uint16_t>(function(int{image.pixels[i]}));
  return deep;
}

class SceneProperties : public testing::Test {
 protected:
  Match TheMatchIn(const ImageView& scene, const FindOptions& options = {}) const {
    const std::vector<Match> matches = FindIn(scene, *model_, options);
    EXPECT_EQ(matches.size(), 1U);
    if (matches.empty()) return {};
    EXPECT_TRUE(IsCovariance(matches[0].covariance));
    return matches[0];
  }

  const Part part_ = render::MetalBracket();
  const std::shared_ptr<const ShapeModel> model_ = test::Learnt(test::PatternOf(part_));
  const double arm_ = 0.25 * (part_.frame.width + part_.frame.height);
  const render::Pose pose_ = {280.3, 210.9, 23, 0.9};
  const GreyImage scene_ = SceneOf(part_, pose_, {.noise_sigma = 3});
};

TEST_F(SceneProperties, QuarterTurnsTurnTheAnswer) {
  const Match first = TheMatchIn(scene_.View());
  GreyImage scene = scene_;
  Similarity expected = first.scene_from_pattern;
  for (int quarters = 1; quarters <= 4; ++quarters) {
    expected = RotatedByAQuarter(expected, scene.height);
    scene = RotatedByAQuarter(scene);
    const Match match = TheMatchIn(scene.View());
    // The searches start from other grids; what they end with is the same optimum, far closer than the noise lets either
    // be to the truth.
    EXPECT_LT(NormalizedSquare(match, expected, arm_), 0.1) << quarters;
    EXPECT_NEAR(match.score, first.score, 0.01) << quarters;
    const bool is_sideways = quarters % 2 != 0;
    for (const auto& [entry, rotated] : {std::pair{0U, 5U}, {5U, 0U}, {10U, 10U}, {15U, 15U}}) {
      const double variance = first.covariance[is_sideways ? rotated : entry];
      EXPECT_NEAR(match.covariance[entry], variance, 0.05 * variance) << quarters;
    }
  }
}

TEST_F(SceneProperties, AShiftShiftsTheAnswer) {
  const Match whole = TheMatchIn(scene_.View());
  for (const auto& [left, top] : {std::pair{37, 21}, {64, 0}, {1, 50}}) {
    const ImageView8 window = {scene_.pixels.data() + top * scene_.width + left,
                               scene_.width - left, scene_.height - top, scene_.width};
    Similarity expected = whole.scene_from_pattern;
    expected.x -= left;
    expected.y -= top;
    EXPECT_LT(NormalizedSquare(TheMatchIn(window), expected, arm_), 0.1) << left;
  }
}

TEST_F(SceneProperties, ASceneOfHalfTheSizeHasTheAnswerAtHalfTheScale) {
  const Match whole = TheMatchIn(scene_.View());
  DeepImage half(scene_.width / 2, scene_.height / 2);
  for (std::int32_t y = 0; y < half.height; ++y) {
    for (std::int32_t x = 0; x < half.width; ++x) {
      const auto* const p = &scene_.pixels[static_cast<std::size_t>(2 * (y * scene_.width + x))];
      half.At(x, y) =
          static_cast<std::uint16_t>(64 * (p[0] + p[1] + p[scene_.width] + p[scene_.width + 1]));
    }
  }
  FindOptions options;
  options.min_scale = 0.25;
  const Match match = TheMatchIn(half.View(), options);
  const Similarity& pose = whole.scene_from_pattern;
  const Similarity expected = {(pose.x - 0.5) / 2, (pose.y - 0.5) / 2, pose.angle, pose.scale / 2};
  // The part's edges are as sharp as pixels make them, and sharper in the halved scene: some hundredths of a pixel alias.
  EXPECT_LT(CornerError(match.scene_from_pattern, expected, part_.frame), 0.05);
}

TEST_F(SceneProperties, ASceneOfTwiceTheSizeHasTheAnswerAtTwiceTheScale) {
  const Match whole = TheMatchIn(scene_.View());
  GreyImage twice(2 * scene_.width, 2 * scene_.height);
  for (std::int32_t y = 0; y < twice.height; ++y) {
    for (std::int32_t x = 0; x < twice.width; ++x)
      twice.At(x, y) = scene_.pixels[static_cast<std::size_t>(y / 2 * scene_.width + x / 2)];
  }
  const Match match = TheMatchIn(twice.View());
  const Similarity& pose = whole.scene_from_pattern;
  const Similarity expected = {2 * pose.x + 0.5, 2 * pose.y + 0.5, pose.angle, 2 * pose.scale};
  // Steps of two pixels, as large as the repeated pixels, are seen as edges of their own.
  EXPECT_LT(CornerError(match.scene_from_pattern, expected, part_.frame), 0.1);
}

TEST_F(SceneProperties, AnInvertedSceneHasTheAnswerOfTheOtherPolarity) {
  FindOptions same;
  same.polarity = Polarity::kSame;
  const Match upright = TheMatchIn(scene_.View(), same);
  EXPECT_FALSE(upright.is_reversed);
  const DeepImage inverted = Developed(scene_, [](int grey) { return 255 - grey; });
  EXPECT_TRUE(FindIn(inverted.View(), *model_, same).empty());
  for (const Polarity polarity : {Polarity::kReversed, Polarity::kEither, Polarity::kMixed}) {
    FindOptions options;
    options.polarity = polarity;
    const Match match = TheMatchIn(inverted.View(), options);
    EXPECT_TRUE(match.is_reversed);
    EXPECT_LT(NormalizedSquare(match, upright.scene_from_pattern, arm_), 0.1);
    EXPECT_NEAR(match.contrast, upright.contrast, 0.02 * upright.contrast);
    // Edges of the sign in the minority count less where each stretch may have its own; here all have the same.
    EXPECT_NEAR(match.score, upright.score, 0.02);
  }
}

TEST_F(SceneProperties, AnotherLightChangesTheContrastAlone) {
  const Match before = TheMatchIn(scene_.View());
  for (const auto& [gain, bias] : {std::pair{100, 7000}, {16, 0}, {257, 0}, {3, 3000}}) {
    const DeepImage deep =
        Developed(scene_, [gain = gain, bias = bias](int grey) { return gain * grey + bias; });
    const Match match = TheMatchIn(deep.View());
    EXPECT_LT(NormalizedSquare(match, before.scene_from_pattern, arm_), 0.1) << gain;
    EXPECT_NEAR(match.score, before.score, 0.02) << gain;
  }
  GreyImage dimmer = scene_;
  for (auto& pixel : dimmer.pixels)
    pixel = static_cast<std::uint8_t>(60 + pixel / 2);
  const Match match = TheMatchIn(dimmer.View());
  EXPECT_NEAR(match.contrast / before.contrast, 0.5, 0.01);
}

TEST_F(SceneProperties, TheCovarianceIsThatOfTheAnswersToManyNoises) {
  constexpr int kRuns = 24;
  const render::Size size = {300, 280};
  const render::Pose pose = {152.4, 139.7, -57, 0.95};
  // Told of a corner, which angle and scale move most.
  LearnOptions learn;
  learn.learns_chance = false;
  learn.origin = Point{5.0, 170.0};
  const GreyImage pattern = test::PatternOf(part_, {.blur_sigma_px = 0.7});
  const auto model = LearnShape(pattern.View(), learn).model;
  ASSERT_TRUE(model);
  const Point centre = {0.5 * (pattern.width - 1), 0.5 * (pattern.height - 1)};
  Similarity truth = test::ToSimilarity(pose);
  const Point origin = truth * (*learn.origin - centre);
  truth.x = origin.x;
  truth.y = origin.y;

  double sum = 0.0;
  int num_inside = 0;
  Workspace workspace;
  for (int run = 1; run <= kRuns; ++run) {
    const GreyImage scene = SceneOf(
        part_, pose,
        {.blur_sigma_px = 0.7, .noise_sigma = 8, .seed = static_cast<std::uint64_t>(run)}, size);
    const FindResult result = FindShapes(*model, scene.View(), {}, workspace);
    ASSERT_EQ(result.matches.size(), 1U);
    EXPECT_TRUE(IsCovariance(result.matches[0].covariance));
    const double square = NormalizedSquare(result.matches[0], truth, arm_);
    sum += square;
    num_inside += square < 9.488 ? 1 : 0;  // 95 % of chi-square with four degrees of freedom
  }
  // The mean of so many has a deviation of sqrt(8 / 24) = 0.58; four of them either way.
  EXPECT_NEAR(sum / kRuns, 4.0, 2.3);
  EXPECT_GE(num_inside, 19);  // fewer have a chance of 1 in 500
}

TEST(TexturedScenes, WhatWasCutOutOfAnImageIsFoundThere) {
  const PatternImage image = MakeDeadLeaves(7);
  const auto view = std::get<ImageView8>(image.View());
  constexpr std::int32_t kWidth = 120;
  constexpr std::int32_t kHeight = 90;
  for (const auto& [left, top] : {std::pair{0, 0}, {211, 307}}) {
    const ImageView8 cut = {view.Row(top) + left, kWidth, kHeight, view.stride};
    LearnOptions learn;
    learn.learns_chance = false;
    const auto model = LearnShape(cut, learn).model;
    ASSERT_TRUE(model);
    const std::vector<Match> matches = FindIn(view, *model);
    ASSERT_EQ(matches.size(), 1U) << left;
    // Nothing differs there from what was learnt, so all that is left is rounding.
    const Similarity there = {left + 0.5 * (kWidth - 1), top + 0.5 * (kHeight - 1), 0.0, 1.0};
    EXPECT_LT(CornerError(matches[0].scene_from_pattern, there, {kWidth, kHeight}), 0.005) << left;
    EXPECT_GT(matches[0].score, 0.95) << left;
    // Pattern and scene are made smaller in different ways.
    EXPECT_NEAR(matches[0].contrast, 1.0, 0.05) << left;
  }
}

TEST(TexturedScenes, RangesHoldWhateverIsFound) {
  const PatternImage image = MakeDeadLeaves(8);
  const auto whole = std::get<ImageView8>(image.View());
  const ImageView8 view = {whole.Row(150) + 200, 240, 200, whole.stride};
  LearnOptions learn;
  learn.learns_chance = false;
  const ImageView8 cut = {whole.Row(200) + 250, 80, 70, whole.stride};
  const auto model = LearnShape(cut, learn).model;
  ASSERT_TRUE(model);
  FindOptions options;
  options.min_score = 0.0;
  options.max_matches = 0;
  for (const double start : {-7.0, 0.0, 2.9}) {
    for (const double extent : {0.0, 0.3}) {
      options.angle_start = start;
      options.angle_extent = extent;
      options.min_scale = 0.8 + 0.1 * extent;
      options.max_scale = options.min_scale * (1.0 + extent);
      const std::vector<Match> matches = FindIn(view, *model, options);
      for (const Match& match : matches) {
        const Similarity& pose = match.scene_from_pattern;
        EXPECT_GE(pose.scale, options.min_scale);
        EXPECT_LE(pose.scale, options.max_scale);
        const double off = NormalizedAngle(pose.angle - (start + 0.5 * extent));
        EXPECT_LE(std::abs(off), 0.5 * extent + 1e-12) << start << ' ' << extent;
        EXPECT_TRUE(IsCovariance(match.covariance));
        if (extent == 0.0) {
          EXPECT_EQ(match.covariance[10], 0.0);
          EXPECT_EQ(match.covariance[15], 0.0);
        }
      }
    }
  }
}

}  // namespace
}  // namespace orvandel::shape
