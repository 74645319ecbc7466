// Which score ends the coarse search.

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/segment_engine.h"
#include "tests/search/small_scenes.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

Found ReferenceResult(const ImagePtr& scene, double accept_score) {
  ReferenceParameters parameters;
  parameters.accept_score = accept_score;
  ReferencePattern pattern;
  EXPECT_EQ(ReferenceTrain(pattern, ImageOf(SmallPart()).get(), parameters), 0);
  ReferenceSearch search(pattern, parameters);
  return search.LookForIt(CopyOf(scene).get(), [] { return false; });
}

bool AreSame(const Found& a, const Found& b) {
  return AreSameBits(a.x, b.x) && AreSameBits(a.y, b.y) && AreSameBits(a.score, b.score);
}

/// Expects the object's accept score to be `accept_score`, by random scenes in which one that is a percent
/// lower ends the search sooner, or one that is a percent higher lets it find something better.
void ExpectAcceptScore(QRSIS& search, double accept_score,
                       std::initializer_list<std::uint32_t> seeds) {
  const ScriptedCounter no_hurry(FrozenTime());
  int num_not_lower = 0;
  int num_not_higher = 0;
  for (const std::uint32_t seed : seeds) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    const ImagePtr scene = RandomScene(random, SmallPart());
    const Found expected = ReferenceResult(scene, accept_score);
    num_not_lower += AreSame(ReferenceResult(scene, accept_score - 1), expected) ? 0 : 1;
    num_not_higher += AreSame(ReferenceResult(scene, accept_score + 1), expected) ? 0 : 1;
    ExpectSameResult(LookFor(search, scene), expected);
  }
  EXPECT_GT(num_not_lower, 0);
  EXPECT_GT(num_not_higher, 0);
}

TEST(AcceptScore, IsEightyAtFirst) {
  TrainedSearch search(ImageOf(SmallPart()));
  ExpectAcceptScore(search, 80, {5, 17, 23, 24, 41, 42});
}

TEST(AcceptScore, IsTheNumberThatSetParamsGives) {
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetParams(16, 10, 100000, 75);
  ExpectAcceptScore(search, 75, {10, 13, 30, 31, 33, 38});
}

TEST(AcceptScore, IsReachedByAScoreEqualToIt) {
  // Whatever a pair scores, it reaches 0: each pair is tried at one scale, and the search ends after the
  // first pass.
  SegmentEngine engine(ImageOf(SmallPart()));
  engine.options.accept_score = 0;
  engine.options.min_scale = 0;
  engine.options.max_scale = std::numeric_limits<double>::infinity();
  const SegmentMatch match = engine.Find(SceneOf(SmallPart(), {.x = 92, .y = 71, .angle_deg = 35}));
  EXPECT_GT(match.NumSegments(), 0);
  EXPECT_EQ(match.num_poses, match.NumSegments());
}

}  // namespace
}  // namespace orvandel::test
