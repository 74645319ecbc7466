// Which hypotheses the coarse search forms and scores.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/segment_engine.h"
#include "tests/search/small_scenes.h"
#include "tests/support/numbers.h"

namespace orvandel::test {
namespace {

class CoarseSearchTest : public testing::Test {
 protected:
  /// Tries every pair at every scale.
  static void TryAll(SegmentEngine& engine) {
    engine.options.accept_score = kUnreachableScore;
    engine.options.min_scale = 0;
    engine.options.max_scale = kInfinity;
  }

  const ScriptedCounter no_hurry_{FrozenTime()};
};

TEST_F(CoarseSearchTest, FindsThePatternImageItselfUnrotatedAndUnscaled) {
  const ImagePtr image = ImageOf(SmallPart());
  SegmentEngine engine(image);
  const SegmentMatch match = engine.Find(image);
  EXPECT_EQ(match.outcome, SegmentSearchOutcome::kPoseDetermined);
  EXPECT_TRUE(SameBits(match.scene_from_pattern.angle, 0.0));
  // Refinement moves on only where that scores higher; it has pixels to tell poses apart.
  EXPECT_NEAR(match.scene_from_pattern.scale, 1, 0.02);
  EXPECT_NEAR(match.scene_from_pattern.x, engine.model().reference.x, 1);
  EXPECT_NEAR(match.scene_from_pattern.y, engine.model().reference.y, 1);
  EXPECT_GT(match.score, 95);
  EXPECT_LT(match.num_poses, 5 * match.NumSegments());  // the search ends after the first pass
}

TEST_F(CoarseSearchTest, AcceptedScoreStillLetsTheRestOfTheSceneBeTried) {
  // The first pattern segment's own copy is the first scene segment. It is accepted at once, and
  // each other segment is tried at every scale in range.
  const ImagePtr image = ImageOf(SmallPart());
  SegmentEngine engine(image);
  TryAll(engine);
  engine.options.accept_score = 90;  // which no other pair reaches
  const SegmentMatch match = engine.Find(image);
  EXPECT_EQ(match.num_poses, 1 + 5 * (match.NumSegments() - 1));
}

TEST_F(CoarseSearchTest, TriesFivePatternSegmentsOfMore) {
  SegmentEngine engine(ImageOf(SmallPart()));
  ASSERT_GT(engine.model().segments.size(), 5U);
  TryAll(engine);
  const SegmentMatch match = engine.Find(SceneOf(SmallPart(), kRotated));
  ASSERT_GT(match.NumSegments(), 0);
  EXPECT_EQ(match.num_poses, 5 * 5 * match.NumSegments());
}

TEST_F(CoarseSearchTest, TriesAsManyPatternSegmentsAsItIsToldTo) {
  SegmentEngine engine(ImageOf(SmallPart()));
  TryAll(engine);
  for (const int num_tried : {-1, 0, 1, 3}) {
    engine.options.max_pattern_segments = num_tried;
    const SegmentMatch match = engine.Find(SceneOf(SmallPart(), kRotated));
    EXPECT_EQ(match.num_poses, 5 * std::max(num_tried, 0) * match.NumSegments());
  }
}

TEST_F(CoarseSearchTest, TriesAllPatternSegmentsOfFewerThanFive) {
  SegmentEngine engine(ImageOf(Triangle()));
  const auto num_pattern = static_cast<int>(engine.model().segments.size());
  ASSERT_GE(num_pattern, 3);
  ASSERT_LT(num_pattern, 5);
  TryAll(engine);
  const SegmentMatch match = engine.Find(SceneOf(SmallPart(), kRotated));
  EXPECT_EQ(match.num_poses, 5 * num_pattern * match.NumSegments());
}

/// Pairs of a pattern and a scene segment, and a factor, whose scale no bound excludes.
int NumScalesWithin(double min_scale, double max_scale, const SegmentEngine& engine,
                    const SegmentMatch& match) {
  int num_scales = 0;
  for (std::size_t i = 0; i < 5; ++i) {
    for (const LineSegment& s : match.scene_segments) {
      for (const double factor : {1.0, 1.1, 0.9, 1.2, 0.8}) {
        const double scale = s.length / engine.model().segments[i].length * factor;
        num_scales += scale > max_scale || scale < min_scale ? 0 : 1;
      }
    }
  }
  return num_scales;
}

TEST_F(CoarseSearchTest, ScoresOnlyScalesWithinTheBounds) {
  SegmentEngine engine(ImageOf(SmallPart()));
  engine.options.accept_score = kUnreachableScore;
  const double bounds[][2] = {{1.05, 1.15}, {0.25, 4}, {0.9, 0.9}, {0.5, 2}, {2, 0.5}};
  for (const auto& [min_scale, max_scale] : bounds) {
    engine.options.min_scale = min_scale;
    engine.options.max_scale = max_scale;
    const SegmentMatch match = engine.Find(SceneOf(SmallPart(), kRotated));
    EXPECT_EQ(match.num_poses, NumScalesWithin(min_scale, max_scale, engine, match))
        << min_scale << " to " << max_scale;
  }
}

TEST_F(CoarseSearchTest, DefaultBoundsAreAQuarterAndFour) {
  // Long rods and small plates: scales on either side of both bounds.
  const render::Part rod = PartOf(render::Rectangle({0, 0}, 160, 10), {}, 150);
  const render::Part plate = PartOf(render::Rectangle({0, 0}, 16, 17), {}, 200);
  const ImagePtr scene =
      render::RenderScene({{rod, {.x = 90, .y = 60, .angle_deg = 10}},
                           {plate, {.x = 40, .y = 110, .angle_deg = 20}},
                           {plate, {.x = 90, .y = 120, .angle_deg = 50, .scale = 0.9}}},
                          {}, {180, 150});
  SegmentEngine engine(ImageOf(SmallPart()));
  engine.options.accept_score = kUnreachableScore;
  const SegmentMatch match = engine.Find(scene);
  EXPECT_EQ(match.num_poses, NumScalesWithin(0.25, 4, engine, match));
  EXPECT_GT(NumScalesWithin(0.23, 0.2499, engine, match), 0);
  EXPECT_GT(NumScalesWithin(0.25, 0.27, engine, match), 0);
  EXPECT_GT(NumScalesWithin(3.8, 4, engine, match), 0);
  EXPECT_GT(NumScalesWithin(4.001, 4.2, engine, match), 0);
}

TEST_F(CoarseSearchTest, ScaleEqualToABoundIsScored) {
  // The scale of the pattern's own copy is exactly 1, at the first factor.
  const ImagePtr image = ImageOf(SmallPart());
  TrainedSearch search(image);
  search.SetMinMaxScale(1, 1);
  EXPECT_GT(LookFor(search, image).score, 95);
  search.SetMinMaxScale(std::nextafter(1.0, 2.0), 1.09);  // and just beyond it is not
  const Found without = LookFor(search, image);
  ReferenceParameters parameters;
  parameters.min_scale = std::nextafter(1.0, 2.0);
  parameters.max_scale = 1.09;
  ReferencePattern reference;
  ASSERT_EQ(ReferenceTrain(reference, CopyOf(image).get(), parameters), 0);
  ReferenceSearch reference_search(reference, parameters);
  ExpectSameResult(without, reference_search.LookForIt(CopyOf(image).get(), [] { return false; }));
  EXPECT_NE(reference_search.coarse_scale(), 1.0);
}

TEST_F(CoarseSearchTest, WithoutAHypothesisTheSearchStartsFromNothing) {
  // Angle and scale 0, and the anchor at the first scene segment; the eight scale steps add up to
  // 0.19921875.
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetMinMaxScale(100, 200);
  const Found found = LookFor(search, SceneOf(SmallPart(), kRotated));
  EXPECT_EQ(found.status, 0);
  EXPECT_TRUE(SameBits(found.angle, 0.0));
  EXPECT_LE(std::abs(found.scale), 0.19921875);

  SegmentEngine engine(ImageOf(SmallPart()));
  engine.options.min_scale = 100;
  engine.options.max_scale = 200;
  EXPECT_EQ(engine.Find(SceneOf(SmallPart(), kRotated)).num_poses, 0);

  ReferenceParameters parameters;
  parameters.min_scale = 100;
  parameters.max_scale = 200;
  ReferencePattern reference;
  ASSERT_EQ(ReferenceTrain(reference, CopyOf(ImageOf(SmallPart())).get(), parameters), 0);
  ReferenceSearch reference_search(reference, parameters);
  ExpectSameResult(found, reference_search.LookForIt(CopyOf(SceneOf(SmallPart(), kRotated)).get(),
                                                     [] { return false; }));
}

TEST_F(CoarseSearchTest, AngleIsPatternDirectionMinusSceneDirection) {
  // A part rotated clockwise on the screen by a is found at the angle a; the difference of two
  // segment directions is not normalised, so a full turn may be added or missing.
  TrainedSearch search(ImageOf(SmallPart()));
  for (const double degrees : {20.0, 100.0, 200.0, 300.0}) {
    const Found found =
        LookFor(search, SceneOf(SmallPart(), {.x = 90, .y = 75, .angle_deg = degrees}));
    const double truth = degrees * kPi / 180;
    // The straight stretches cover 20 pixels and more with errors of about a tenth of a pixel.
    EXPECT_NEAR(std::remainder(found.angle - truth, kTwoPi), 0, 0.02) << degrees;
    EXPECT_LE(std::abs(found.angle), kTwoPi);
  }
}

}  // namespace
}  // namespace orvandel::test
