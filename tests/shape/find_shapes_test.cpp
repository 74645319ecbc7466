#include "shape/find_shapes.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/shape/matches.h"
#include "tests/shape/rendered_scenes.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

using render::MetalBracket;
using render::Part;
using test::CornerError;
using test::GreyImage;
using test::Learnt;
using test::PatternOf;
using test::SceneOf;
using test::ToSimilarity;

/// Drawn edges are exact, so what is left is the rounding to grey levels and the pixels' own blur: a tenth of a pixel
/// is far more.
constexpr double kExact = 0.1;

std::vector<Match> FindIn(const GreyImage& scene, const ShapeModel& model,
                          const FindOptions& options = {}) {
  return test::FindIn(scene.View(), model, options);
}

TEST(FindShapes, TellsThePoseOfADrawnPart) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  test::UniformRandom random(3);
  for (int i = 0; i < 12; ++i) {
    const render::Pose pose = {random.Real(200, 440), random.Real(180, 300), random.Real(-180, 180),
                               random.Real(0.55, 1.4)};
    const auto matches = FindIn(SceneOf(part, pose), *model);
    ASSERT_EQ(matches.size(), 1U) << i;
    EXPECT_LT(CornerError(matches[0].scene_from_pattern, ToSimilarity(pose), part.frame), kExact)
        << i;
    EXPECT_GT(matches[0].score, 0.85) << i;
    EXPECT_FALSE(matches[0].is_reversed) << i;
    EXPECT_EQ(matches[0].share_outside, 0.0) << i;
  }
}

TEST(FindShapes, FindsTheReversedPartWhereReversedIsAllowed) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const render::Pose pose = {300.3, 200.8, 40.0, 1.0};
  GreyImage scene = SceneOf(part, pose);
  for (auto& pixel : scene.pixels)
    pixel = static_cast<std::uint8_t>(255 - pixel);
  for (const Polarity polarity : {Polarity::kReversed, Polarity::kEither, Polarity::kMixed}) {
    FindOptions options;
    options.polarity = polarity;
    const auto matches = FindIn(scene, *model, options);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_TRUE(matches[0].is_reversed);
    EXPECT_LT(CornerError(matches[0].scene_from_pattern, ToSimilarity(pose), part.frame), kExact);
  }
}

TEST(FindShapes, LeavesPointsOutsideTheSceneOut) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const render::Pose pose = {30.4, 240.2, 75.0, 1.0};
  const auto matches = FindIn(SceneOf(part, pose), *model);
  ASSERT_EQ(matches.size(), 1U);
  EXPECT_LT(CornerError(matches[0].scene_from_pattern, ToSimilarity(pose), part.frame), 2 * kExact);
  EXPECT_GT(matches[0].share_outside, 0.1);
  EXPECT_GT(matches[0].coverage, 0.85);  // of what can be seen
}

TEST(FindShapes, FindsEachOfSeveralOnce) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const std::vector<render::Pose> poses = {
      {150, 130, 20, 1.0}, {480, 130, -100, 0.9}, {320, 340, 160, 1.1}};
  std::vector<render::Placement> placements;
  for (const render::Pose& pose : poses)
    placements.push_back({part, pose});
  const GreyImage scene = test::ToGreyImage(render::RenderScene(placements));
  FindOptions options;
  options.max_matches = 0;
  const auto matches = FindIn(scene, *model, options);
  ASSERT_EQ(matches.size(), poses.size());
  for (const render::Pose& pose : poses) {
    int hits = 0;
    for (const Match& match : matches)
      hits +=
          CornerError(match.scene_from_pattern, ToSimilarity(pose), part.frame) < kExact ? 1 : 0;
    EXPECT_EQ(hits, 1);
  }
  for (std::size_t i = 1; i < matches.size(); ++i)
    EXPECT_GE(matches[i - 1].score, matches[i].score);
}

TEST(FindShapes, ClutterGrowsWithForeignEdgesInsideTheOutline) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const render::Pose pose = {320, 240, 20, 1.0};
  const auto clean = FindIn(SceneOf(part, pose), *model);
  std::vector<render::Placement> placements = {{part, pose}};
  for (int i = 0; i < 6; ++i)
    placements.push_back({render::Washer(9, 4), {270.0 + 20 * i, 225.0 + 8 * (i % 2), 0.0, 1.0}});
  const auto littered = FindIn(test::ToGreyImage(render::RenderScene(placements)), *model);
  ASSERT_EQ(clean.size(), 1U);
  ASSERT_EQ(littered.size(), 1U);
  // The pattern's own edges make no clutter but for the weak ones that were not learnt.
  EXPECT_LT(clean[0].clutter, 0.3);
  EXPECT_GT(littered[0].clutter, clean[0].clutter + 0.05);
}

TEST(FindShapes, KeepsToTheRanges) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const GreyImage scene = SceneOf(part, {320, 240, 31, 1.0});
  // The part lies at or beyond the borders of these ranges.
  FindOptions options;
  options.min_score = 0.0;
  options.angle_start = 0.0;
  options.angle_extent = 30.5 * kPi / 180.0;
  options.min_scale = 0.9;
  options.max_scale = 0.995;
  for (const Match& match : FindIn(scene, *model, options)) {
    EXPECT_GE(match.scene_from_pattern.scale, options.min_scale);
    EXPECT_LE(match.scene_from_pattern.scale, options.max_scale);
    EXPECT_GE(match.scene_from_pattern.angle, -1e-12);
    EXPECT_LE(match.scene_from_pattern.angle, options.angle_extent + 1e-12);
  }
  options.min_scale = options.max_scale = 1.0;
  for (const Match& match : FindIn(scene, *model, options))
    EXPECT_EQ(match.scene_from_pattern.scale, 1.0);
}

TEST(FindShapes, AThresholdEqualToAScoreStillFindsIt) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const GreyImage scene = SceneOf(part, {320, 240, 31, 1.0}, {.noise_sigma = 8});
  const auto matches = FindIn(scene, *model);
  ASSERT_EQ(matches.size(), 1U);
  FindOptions options;
  options.min_score = matches[0].score;
  EXPECT_EQ(FindIn(scene, *model, options).size(), 1U);
  options.min_score = std::nextafter(matches[0].score, 2.0);
  EXPECT_EQ(FindIn(scene, *model, options).size(), 0U);
}

TEST(FindShapes, ReportsTheOriginThatWasLearnt) {
  const Part part = MetalBracket();
  const GreyImage pattern = PatternOf(part);
  const render::Pose pose = {301.5, 222.25, -64.0, 0.8};
  const GreyImage scene = SceneOf(part, pose);
  LearnOptions learn;
  learn.learns_chance = false;
  learn.origin = Point{20.0, 135.0};
  const auto model = LearnShape(pattern.View(), learn).model;
  ASSERT_TRUE(model);
  const auto matches = FindIn(scene, *model);
  ASSERT_EQ(matches.size(), 1U);
  const Point centre = {0.5 * (pattern.width - 1), 0.5 * (pattern.height - 1)};
  const Point expected = ToSimilarity(pose) * (*learn.origin - centre);
  EXPECT_NEAR(matches[0].scene_from_pattern.x, expected.x, kExact);
  EXPECT_NEAR(matches[0].scene_from_pattern.y, expected.y, kExact);
}

TEST(FindShapes, GivesTheSameBitsAtEveryLevelOfVectorInstructions) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const GreyImage scene = SceneOf(part, {322.2, 141.7, 131, 0.7}, {.noise_sigma = 10});
  FindOptions options;
  options.min_score = 0.0;
  options.max_matches = 5;
  const auto first = FindIn(scene, *model, options);
  ASSERT_FALSE(first.empty());
  for (const SimdLevel level : SupportedSimdLevels()) {
    const test::ForcedSimdLevel forced(level);
    test::ExpectSameBits(FindIn(scene, *model, options), first);
  }
}

TEST(LearnShape, GivesTheSameBitsAtEveryLevelOfVectorInstructions) {
  const Part part = MetalBracket();
  const GreyImage pattern = PatternOf(part, {.noise_sigma = 2});
  const GreyImage scene = SceneOf(part, {322.2, 141.7, 131, 0.7}, {.noise_sigma = 10});
  const auto first = LearnShape(pattern.View()).model;
  ASSERT_TRUE(first);
  ASSERT_FALSE(first->chances.empty());
  for (const SimdLevel level : SupportedSimdLevels()) {
    if (level == ActiveSimdLevel()) continue;
    const test::ForcedSimdLevel forced(level);
    // Chance levels take most of the time.
    LearnOptions options;
    options.learns_chance = level == SupportedSimdLevels().front();
    const auto model = LearnShape(pattern.View(), options).model;
    ASSERT_TRUE(model);
    if (!options.learns_chance) {
      test::ExpectSameBits(FindIn(scene, *model), FindIn(scene, *Learnt(pattern)));
      continue;
    }
    ASSERT_EQ(model->chances.size(), first->chances.size());
    for (std::size_t i = 0; i < first->chances.size(); ++i)
      EXPECT_EQ(model->chances[i].score, first->chances[i].score);
    test::ExpectSameBits(FindIn(scene, *model), FindIn(scene, *first));
  }
}

TEST(FindShapes, AUsedWorkspaceChangesNoBit) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const GreyImage scene = SceneOf(part, {322.2, 141.7, 131, 0.7}, {.noise_sigma = 10});
  const GreyImage other = SceneOf(part, {500.0, 500.0, 10, 1.7}, {.noise_sigma = 20}, {900, 700});
  FindOptions options;
  options.min_score = 0.0;
  const auto first = FindIn(scene, *model, options);
  Workspace workspace;
  for (int round = 0; round < 2; ++round) {
    FindShapes(*model, other.View(), {}, workspace);
    const FindResult result = FindShapes(*model, scene.View(), options, workspace);
    test::ExpectSameBits({result.matches.begin(), result.matches.end()}, first);
  }
}

TEST(FindShapes, EndsWhenItsTimeIsUpAndSaysSo) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const GreyImage scene = SceneOf(part, {1500, 1000, 31, 1.0}, {}, {4000, 3000});
  FindOptions options;
  options.time_budget_us = 1;
  Workspace workspace;
  const FindResult result = FindShapes(*model, scene.View(), options, workspace);
  EXPECT_EQ(result.status, FindStatus::kOk);
  EXPECT_TRUE(result.timed_out);
  EXPECT_TRUE(result.matches.empty());
  options.time_budget_us = std::numeric_limits<std::int64_t>::max();
  const FindResult whole = FindShapes(*model, scene.View(), options, workspace);
  EXPECT_FALSE(whole.timed_out);
  EXPECT_EQ(whole.matches.size(), 1U);
}

TEST(FindShapes, DeepImagesGiveTheSamePoses) {
  const Part part = MetalBracket();
  const GreyImage pattern = PatternOf(part);
  const render::Pose pose = {300.3, 230.9, 23, 0.9};
  const GreyImage scene = SceneOf(part, pose, {.noise_sigma = 2});
  const auto deep = [](const GreyImage& image) {
    test::DeepImage copy(image.width, image.height);
    for (std::size_t i = 0; i < image.pixels.size(); ++i)
      copy.pixels[i] = static_cast<std::uint16_t>(image.pixels[i] * 16);
    return copy;
  };
  LearnOptions learn;
  learn.learns_chance = false;
  const auto model = LearnShape(deep(pattern).View(), learn).model;
  ASSERT_TRUE(model);
  Workspace workspace;
  const test::DeepImage deep_scene = deep(scene);
  const FindResult result = FindShapes(*model, deep_scene.View(), {}, workspace);
  ASSERT_EQ(result.matches.size(), 1U);
  EXPECT_LT(CornerError(result.matches[0].scene_from_pattern, ToSimilarity(pose), part.frame),
            kExact);
}

}  // namespace
}  // namespace orvandel::shape
