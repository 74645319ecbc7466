#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "shape/find_shapes.h"
#include "shape/learn_shape.h"
#include "tests/shape/rendered_scenes.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

using test::GreyImage;
using test::PatternOf;

GreyImage RandomImage(int width, int height, std::uint32_t seed) {
  test::UniformRandom random(seed);
  GreyImage image(width, height);
  for (auto& pixel : image.pixels)
    pixel = static_cast<std::uint8_t>(random.Integer(0, 255));
  return image;
}

TEST(LearnShape, AnImageWithoutEdgesIsAnErrorWithASentence) {
  for (const GreyImage& image : {GreyImage(100, 80, 0), GreyImage(100, 80, 255), GreyImage(3, 3, 9),
                                 GreyImage(1, 200, 77), GreyImage(200, 1, 77)}) {
    const LearnResult result = LearnShape(image.View());
    EXPECT_EQ(result.status, LearnStatus::kNoEdges);
    EXPECT_FALSE(result.message.empty());
    EXPECT_FALSE(result.model);
  }
}

TEST(LearnShape, NoPixelsAndForeignMasksAreErrors) {
  EXPECT_EQ(LearnShape(ImageView8{}).status, LearnStatus::kEmptyImage);
  const GreyImage image = PatternOf(render::MetalBracket());
  LearnOptions options;
  const GreyImage mask(10, 10, 255);
  options.mask = mask.View();
  EXPECT_EQ(LearnShape(image.View(), options).status, LearnStatus::kBadOptions);
  options = {};
  options.origin = Point{std::nan(""), 0.0};
  EXPECT_EQ(LearnShape(image.View(), options).status, LearnStatus::kBadOptions);
}

TEST(LearnShape, WhatIsMaskedIsNotLearnt) {
  const GreyImage image = PatternOf(render::MetalBracket());
  const GreyImage nothing(image.width, image.height, 0);
  LearnOptions options;
  options.learns_chance = false;
  options.mask = nothing.View();
  EXPECT_EQ(LearnShape(image.View(), options).status, LearnStatus::kNoEdges);

  GreyImage left_half = nothing;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width / 2; ++x)
      left_half.At(x, y) = 1;
  }
  options.mask = left_half.View();
  const auto model = LearnShape(image.View(), options).model;
  ASSERT_TRUE(model);
  for (const ModelLevel& level : model->levels) {
    for (std::size_t i = 0; i < level.all.size; ++i)
      EXPECT_LE(level.all.x[i], 0.5F);
  }
}

class FindInOddImages : public testing::Test {
 protected:
  void ExpectValidMatches(const ImageView& scene) {
    FindOptions options;
    options.min_score = 0.0;
    options.max_matches = 0;
    const FindResult result = FindShapes(*model_, scene, options, workspace_);
    EXPECT_EQ(result.status, FindStatus::kOk);
    for (const Match& match : result.matches) {
      EXPECT_TRUE(std::isfinite(match.scene_from_pattern.x));
      EXPECT_TRUE(std::isfinite(match.scene_from_pattern.y));
      EXPECT_GE(match.scene_from_pattern.scale, options.min_scale);
      EXPECT_LE(match.scene_from_pattern.scale, options.max_scale);
      EXPECT_GT(match.score, 0.0);
      EXPECT_LE(match.score, 1.0);
      for (const double value : match.covariance)
        EXPECT_TRUE(std::isfinite(value));
    }
  }

  std::shared_ptr<const ShapeModel> model_ = test::Learnt(PatternOf(render::MetalBracket()));
  Workspace workspace_;
};

TEST_F(FindInOddImages, FlatOnesHoldNothing) {
  for (const int grey : {0, 128, 255}) {
    const GreyImage scene(640, 480, static_cast<std::uint8_t>(grey));
    FindOptions options;
    options.min_score = 0.0;
    EXPECT_TRUE(FindShapes(*model_, scene.View(), options, workspace_).matches.empty());
  }
}

TEST_F(FindInOddImages, SmallAndNarrowOnesAreSearchedAsAnyOther) {
  for (const auto& [width, height] : {std::pair{1, 1},
                                      {1, 300},
                                      {300, 1},
                                      {2, 2},
                                      {3, 7},
                                      {5, 5},
                                      {17, 9},
                                      {64, 3},
                                      {33, 31},
                                      {100, 40}}) {
    ExpectValidMatches(RandomImage(width, height, 1).View());
    ExpectValidMatches(GreyImage(width, height, 255).View());
  }
}

TEST_F(FindInOddImages, RandomAndSaturatedOnes) {
  GreyImage scene = RandomImage(320, 240, 2);
  ExpectValidMatches(scene.View());
  for (auto& pixel : scene.pixels)
    pixel = static_cast<std::uint8_t>(pixel < 128 ? 0 : 255);
  ExpectValidMatches(scene.View());
}

TEST_F(FindInOddImages, NoPixelsIsAnError) {
  const FindResult result = FindShapes(*model_, ImageView8{}, {}, workspace_);
  EXPECT_EQ(result.status, FindStatus::kEmptyImage);
  EXPECT_FALSE(result.message.empty());
}

TEST_F(FindInOddImages, TooManyPixelsIsAnError) {
  // No pixel is read: all rows are the same one.
  const GreyImage row(kMaxImageSide + 1, 1, 9);
  for (const ImageView8 scene : {ImageView8{row.pixels.data(), kMaxImageSide + 1, 1, 0},
                                 ImageView8{row.pixels.data(), 30000, 30000, 0}}) {
    const FindResult result = FindShapes(*model_, scene, {}, workspace_);
    EXPECT_EQ(result.status, FindStatus::kTooLarge);
    EXPECT_FALSE(result.message.empty());
  }
}

TEST_F(FindInOddImages, OptionsThatMakeNoSenseAreErrorsWithASentence) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  std::vector<FindOptions> mistakes(12);
  mistakes[0].angle_start = nan;
  mistakes[1].angle_extent = -0.1;
  mistakes[2].angle_extent = infinite;
  mistakes[3].min_scale = 0.0;
  mistakes[4].max_scale = infinite;
  mistakes[5].min_scale = 3.0;
  mistakes[6].min_score = 1.5;
  mistakes[7].min_score = nan;
  mistakes[8].max_matches = -1;
  mistakes[9].max_overlap = nan;
  mistakes[10].time_budget_us = -1;
  mistakes[11].num_threads = -1;
  const GreyImage scene(64, 64, 9);
  for (std::size_t i = 0; i < mistakes.size(); ++i) {
    const FindResult result = FindShapes(*model_, scene.View(), mistakes[i], workspace_);
    EXPECT_EQ(result.status, FindStatus::kBadOptions) << i;
    EXPECT_FALSE(result.message.empty()) << i;
    EXPECT_TRUE(result.matches.empty()) << i;
  }
}

}  // namespace
}  // namespace orvandel::shape
