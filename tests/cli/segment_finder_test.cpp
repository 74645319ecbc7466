#include "cli/segment_finder.h"

#include <gtest/gtest.h>

#include "evaluation/pose_error.h"
#include "tests/cli/test_images.h"
#include "tests/support/images.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::cli::test {

using orvandel::test::MakeImage;
using orvandel::test::ScratchFolder;

namespace {

class SegmentFinderOfTheBracket : public testing::Test {
 protected:
  SegmentFinderOfTheBracket() {
    WriteBracketPattern(folder_.File("pattern.png"));
    frame_ = finder_.Learn(ReadImage(folder_.File("pattern.png")));
  }

  ScratchFolder folder_;
  SegmentFinder finder_{SearchOptions{}};
  evaluation::PatternFrame frame_;
};

TEST_F(SegmentFinderOfTheBracket, FindsThePoseThatTheSceneWasRenderedWith) {
  EXPECT_EQ(frame_.width, kBracketWidth);
  EXPECT_EQ(frame_.height, kBracketHeight);
  constexpr render::Pose kPose = {.x = 301.3, .y = 244.8, .angle_deg = 137, .scale = 1.1};
  WriteBracketScene(folder_.File("scene.png"), kPose);
  const evaluation::Finding finding = finder_.Find(ReadImage(folder_.File("scene.png")));
  EXPECT_EQ(finding.status, "found");
  ASSERT_EQ(finding.matches.size(), 1u);
  EXPECT_TRUE(finding.HasAccepted());
  const Similarity truth = {kPose.x, kPose.y, evaluation::Radians(kPose.angle_deg), kPose.scale};
  // A pixel: the width of the plateau that the score has round the best pose. Positions told in the
  // other count of pixels would be off by 0.7 on top of that, wherever the part lies.
  EXPECT_LT(evaluation::ErrorOf(finding.matches[0].scene_from_pattern, truth, frame_).corner_px, 1);
}

TEST_F(SegmentFinderOfTheBracket, WithoutEdgesThereIsNoMatch) {
  ImageFile flat;
  flat.image = MakeImage(64, 64, [](int, int) { return 90; });
  const evaluation::Finding finding = finder_.Find(flat);
  EXPECT_EQ(finding.status, "no_contours");
  EXPECT_TRUE(finding.matches.empty());
  EXPECT_FALSE(finding.HasAccepted());
}

TEST_F(SegmentFinderOfTheBracket, TheSceneIsNotChanged) {
  const auto step = [](int x, int) { return x < 32 ? 40 : 200; };
  ImageFile scene;
  scene.image = MakeImage(64, 64, step);
  finder_.Find(scene);
  for (int x = 0; x < 64; ++x)
    EXPECT_EQ(scene.image->row[30][x], step(x, 30)) << x;
}

}  // namespace
}  // namespace orvandel::cli::test
