#include "cli/shape_finder.h"

#include <gtest/gtest.h>

#include "evaluation/pose_deviation.h"
#include "evaluation/pose_error.h"
#include "tests/cli/test_images.h"
#include "tests/support/images.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::cli::test {

using orvandel::test::MakeImage;
using orvandel::test::ScratchFolder;

namespace {

Similarity SimilarityOf(const render::Pose& pose) {
  return {pose.x, pose.y, evaluation::Radians(pose.angle_deg), pose.scale};
}

class ShapeFinderOfTheBracket : public testing::Test {
 protected:
  ShapeFinderOfTheBracket() {
    WriteBracketPattern(folder_.File("pattern.png"));
    frame_ = finder_.Learn(ReadImage(folder_.File("pattern.png")));
  }

  ScratchFolder folder_;
  ShapeFinder finder_{SearchOptions{}};
  evaluation::PatternFrame frame_;
};

TEST_F(ShapeFinderOfTheBracket, FindsThePoseThatTheSceneWasRenderedWith) {
  EXPECT_EQ(frame_.width, kBracketWidth);
  EXPECT_EQ(frame_.height, kBracketHeight);
  constexpr render::Pose kPose = {.x = 301.3, .y = 244.8, .angle_deg = 137, .scale = 1.1};
  WriteBracketScene(folder_.File("scene.png"), kPose);
  const evaluation::Finding finding = finder_.Find(ReadImage(folder_.File("scene.png")));
  EXPECT_EQ(finding.status, "found");
  ASSERT_EQ(finding.matches.size(), 1u);
  EXPECT_TRUE(finding.HasAccepted());
  const evaluation::Match& match = finding.matches[0];
  // A tenth of what positions in the other count of pixels would be off.
  EXPECT_LT(evaluation::ErrorOf(match.scene_from_pattern, SimilarityOf(kPose), frame_).corner_px,
            0.07);
  ASSERT_TRUE(match.covariance);
  const evaluation::PoseDeviation deviation = evaluation::DeviationOf(
      match.scene_from_pattern, *match.covariance, SimilarityOf(kPose), frame_, {});
  EXPECT_EQ(deviation.num_free, 4);
  EXPECT_LT(deviation.squared, 100);  // ten deviations: a wrong unit or place would be thousands
}

TEST_F(ShapeFinderOfTheBracket, FindsAsManyAsAskedFor) {
  WriteBracketsScene(folder_.File("scene.png"),
                     {{.x = 150, .y = 150}, {.x = 450, .y = 300, .angle_deg = 100}});
  const ImageFile scene = ReadImage(folder_.File("scene.png"));
  EXPECT_EQ(finder_.Find(scene).matches.size(), 1u);
  EXPECT_EQ(finder_.FindSeveral(scene, 2).matches.size(), 2u);
  EXPECT_EQ(finder_.FindSeveral(scene, 0).matches.size(), 2u);
}

TEST_F(ShapeFinderOfTheBracket, WithoutEdgesThereIsNoMatch) {
  ImageFile flat;
  flat.image = MakeImage(64, 64, [](int, int) { return 90; });
  const evaluation::Finding finding = finder_.Find(flat);
  EXPECT_EQ(finding.status, "not_found");
  EXPECT_TRUE(finding.matches.empty());
  EXPECT_FALSE(finding.HasAccepted());
}

TEST_F(ShapeFinderOfTheBracket, TellsWhatWasLearnt) {
  const PatternFacts facts = finder_.Facts();
  EXPECT_EQ(facts.reference, (Point{109.5, 89.5}));
  const auto& shape = std::get<ShapeFacts>(facts.learnt);
  EXPECT_GT(NumEdgePoints(shape), 500);  // its outline alone is longer
  EXPECT_EQ(shape.levels.front().factor, 1);
  // At some 20 pixels across, a tenth of the size, a part still has an outline.
  EXPECT_LT(SmallestScale(shape), 0.15);
  EXPECT_FALSE(shape.chances.empty());
}

}  // namespace
}  // namespace orvandel::cli::test
