// Which hypotheses the coarse search forms and scores. The counter stands still, and as it is read
// once after every score that is not accepted, it tells how many there were.

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/search/plain_pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"

namespace orvandel::test {
namespace {

constexpr int kUnreachable = 101;   // an accept score that no hypothesis has
constexpr int kPreparingReads = 3;  // start, and the tests behind contours and segments
constexpr double kInfinity = std::numeric_limits<double>::infinity();

const render::Pose kTurned{.x = 92, .y = 71, .angle_deg = 35};

std::vector<CLineSegment> SegmentsOf(void* set) {
  CLineExtracter lines;
  lines.Extract(set);
  return lines.segments;
}

/// A search and the number of its scores that were not accepted.
struct CountedSearch {
  Found found;
  int num_scores;
};

CountedSearch CountScores(QRSIS& search, const ImagePtr& scene) {
  const ScriptedCounter counter(FrozenTime());
  const Found found = LookFor(search, scene);
  return {found, counter.num_reads() - kPreparingReads};
}

TEST(CoarseSearch, FindsThePatternImageItselfUnturnedAndUnscaled) {
  const ImagePtr picture = PictureOf(SmallPart());
  TrainedSearch search(picture);
  const auto [found, num_scores] = CountScores(search, picture);
  double x = 0;
  double y = 0;
  search.GetPatternRef(&x, &y);
  EXPECT_EQ(found.status, 0);
  EXPECT_TRUE(SameBits(found.angle, 0.0));
  // Refinement moves on only where that scores higher; it has pixels to tell poses apart.
  EXPECT_NEAR(found.scale, 1, 0.02);
  EXPECT_NEAR(found.x, x, 1);
  EXPECT_NEAR(found.y, y, 1);
  EXPECT_GT(found.score, 95);
  // The accepted score is followed by no test, and the search ends after the first pass.
  const int num_segments = static_cast<int>(SegmentsOf(search.GetCrawlerSceneData()).size());
  EXPECT_LT(num_scores, 5 * num_segments);
}

TEST(CoarseSearch, AcceptedScoreStillLetsTheRestOfTheSceneBeTried) {
  // The first pattern segment's own copy is the first scene segment. It is accepted at once, and
  // each other segment is tried at every scale in range.
  const ImagePtr picture = PictureOf(SmallPart());
  TrainedSearch search(picture);
  search.SetParams(16, 10, 100000, 90);  // which no other pair reaches
  search.SetMinMaxScale(0, kInfinity);
  const auto [found, num_scores] = CountScores(search, picture);
  const int num_segments = static_cast<int>(SegmentsOf(search.GetCrawlerSceneData()).size());
  EXPECT_EQ(num_scores, 5 * (num_segments - 1));
}

TEST(CoarseSearch, TriesFivePatternSegmentsOfMore) {
  TrainedSearch search(PictureOf(SmallPart()));
  ASSERT_GT(SegmentsOf(search.GetCrawlerPatternData()).size(), 5U);
  search.SetParams(16, 10, 100000, kUnreachable);
  search.SetMinMaxScale(0, kInfinity);
  const int num_scores = CountScores(search, SceneOf(SmallPart(), kTurned)).num_scores;
  EXPECT_EQ(num_scores, 5 * 5 * static_cast<int>(SegmentsOf(search.GetCrawlerSceneData()).size()));
}

TEST(CoarseSearch, TriesAllPatternSegmentsOfFewerThanFive) {
  TrainedSearch search(PictureOf(Triangle()));
  const int num_pattern = static_cast<int>(SegmentsOf(search.GetCrawlerPatternData()).size());
  ASSERT_GE(num_pattern, 3);
  ASSERT_LT(num_pattern, 5);
  search.SetParams(16, 10, 100000, kUnreachable);
  search.SetMinMaxScale(0, kInfinity);
  const int num_scores = CountScores(search, SceneOf(SmallPart(), kTurned)).num_scores;
  const int num_scene = static_cast<int>(SegmentsOf(search.GetCrawlerSceneData()).size());
  EXPECT_EQ(num_scores, 5 * num_pattern * num_scene);
}

/// Pairs of a pattern and a scene segment, and a factor, whose scale no bound excludes.
int NumScalesWithin(double min_scale, double max_scale, TrainedSearch& search) {
  int num_scales = 0;
  const std::vector<CLineSegment> pattern = SegmentsOf(search.GetCrawlerPatternData());
  for (std::size_t i = 0; i < 5; ++i) {
    for (const CLineSegment& s : SegmentsOf(search.GetCrawlerSceneData())) {
      for (const double factor : {1.0, 1.1, 0.9, 1.2, 0.8}) {
        const double scale = s.length / pattern[i].length * factor;
        num_scales += scale > max_scale || scale < min_scale ? 0 : 1;
      }
    }
  }
  return num_scales;
}

TEST(CoarseSearch, ScoresOnlyScalesWithinTheBounds) {
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetParams(16, 10, 100000, kUnreachable);
  const double bounds[][2] = {{1.05, 1.15}, {0.25, 4}, {0.9, 0.9}, {0.5, 2}, {2, 0.5}};
  for (const auto& [min_scale, max_scale] : bounds) {
    search.SetMinMaxScale(min_scale, max_scale);
    const int num_scores = CountScores(search, SceneOf(SmallPart(), kTurned)).num_scores;
    EXPECT_EQ(num_scores, NumScalesWithin(min_scale, max_scale, search))
        << min_scale << " to " << max_scale;
  }
}

TEST(CoarseSearch, DefaultBoundsAreAQuarterAndFour) {
  // Long rods and small plates: scales on either side of both bounds.
  const render::Part rod = PartOf(render::Rectangle({0, 0}, 160, 10), {}, 150);
  const render::Part plate = PartOf(render::Rectangle({0, 0}, 16, 17), {}, 200);
  const ImagePtr scene =
      render::RenderScene({{rod, {.x = 90, .y = 60, .angle_deg = 10}},
                           {plate, {.x = 40, .y = 110, .angle_deg = 20}},
                           {plate, {.x = 90, .y = 120, .angle_deg = 50, .scale = 0.9}}},
                          {}, {180, 150});
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetParams(16, 10, 100000, kUnreachable);
  const int num_scores = CountScores(search, scene).num_scores;
  EXPECT_EQ(num_scores, NumScalesWithin(0.25, 4, search));
  EXPECT_GT(NumScalesWithin(0.23, 0.2499, search), 0);
  EXPECT_GT(NumScalesWithin(0.25, 0.27, search), 0);
  EXPECT_GT(NumScalesWithin(3.8, 4, search), 0);
  EXPECT_GT(NumScalesWithin(4.001, 4.2, search), 0);
}

TEST(CoarseSearch, ScaleEqualToABoundIsScored) {
  // The scale of the pattern's own copy is exactly 1, at the first factor.
  const ImagePtr picture = PictureOf(SmallPart());
  TrainedSearch search(picture);
  search.SetMinMaxScale(1, 1);
  EXPECT_GT(CountScores(search, picture).found.score, 95);
  search.SetMinMaxScale(std::nextafter(1.0, 2.0), 1.09);  // and just beyond it is not
  const Found without = CountScores(search, picture).found;
  PlainParameters parameters;
  parameters.min_scale = std::nextafter(1.0, 2.0);
  parameters.max_scale = 1.09;
  PlainPattern plain;
  ASSERT_EQ(PlainTrain(plain, CopyOf(picture).get(), parameters), 0);
  PlainSearch plain_search(plain, parameters);
  ExpectSameResult(without, plain_search.LookForIt(CopyOf(picture).get(), [] { return false; }));
  EXPECT_NE(plain_search.coarse_scale(), 1.0);
}

TEST(CoarseSearch, WithoutAHypothesisTheSearchStartsFromNothing) {
  // Angle and scale 0, and the anchor at the first scene segment; the eight scale steps add up to
  // 0.19921875.
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetMinMaxScale(100, 200);
  const auto [found, num_scores] = CountScores(search, SceneOf(SmallPart(), kTurned));
  EXPECT_EQ(num_scores, 0);
  EXPECT_EQ(found.status, 0);
  EXPECT_TRUE(SameBits(found.angle, 0.0));
  EXPECT_LE(std::abs(found.scale), 0.19921875);

  PlainParameters parameters;
  parameters.min_scale = 100;
  parameters.max_scale = 200;
  PlainPattern plain;
  ASSERT_EQ(PlainTrain(plain, CopyOf(PictureOf(SmallPart())).get(), parameters), 0);
  PlainSearch plain_search(plain, parameters);
  ExpectSameResult(found, plain_search.LookForIt(CopyOf(SceneOf(SmallPart(), kTurned)).get(),
                                                 [] { return false; }));
}

TEST(CoarseSearch, AngleIsPatternDirectionMinusSceneDirection) {
  // A part turned clockwise on the screen by a is found at the angle a; the difference of two
  // segment directions is not normalised, so a full turn may be added or missing.
  TrainedSearch search(PictureOf(SmallPart()));
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
