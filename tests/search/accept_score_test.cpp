// Which score ends the coarse search. As the counter is read after every score that is not
// accepted, the number of reads tells whether one was.

#include <cstdint>
#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/search/plain_pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

struct PlainOutcome {
  double best_score;  ///< of the coarse search
  int num_reads;
};

PlainOutcome SearchPlainly(const ImagePtr& scene, double accept_score) {
  PlainParameters parameters;
  parameters.accept_score = accept_score;
  PlainPattern pattern;
  EXPECT_EQ(PlainTrain(pattern, PictureOf(SmallPart()).get(), parameters), 0);
  PlainSearch search(pattern, parameters);
  int num_reads = 1;
  search.LookForIt(CopyOf(scene).get(), [&] {
    ++num_reads;
    return false;
  });
  return {search.coarse_score(), num_reads};
}

/// Expects the object's accept score to be `accept_score`, by random scenes whose best hypotheses
/// score within a percent above and below it.
void ExpectAcceptScore(QRSIS& search, double accept_score,
                       std::initializer_list<std::uint32_t> seeds) {
  int num_just_above = 0;
  int num_just_below = 0;
  for (const std::uint32_t seed : seeds) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    const ImagePtr scene = RandomScene(random, SmallPart());
    const double best = SearchPlainly(scene, 101).best_score;
    num_just_above += best >= accept_score && best < accept_score + 1 ? 1 : 0;
    num_just_below += best < accept_score && best >= accept_score - 1 ? 1 : 0;
    const ScriptedCounter counter(FrozenTime());
    LookFor(search, scene);
    EXPECT_EQ(counter.num_reads(), SearchPlainly(scene, accept_score).num_reads);
  }
  EXPECT_GT(num_just_above, 0);
  EXPECT_GT(num_just_below, 0);
}

TEST(AcceptScore, IsEightyAtFirst) {
  TrainedSearch search(PictureOf(SmallPart()));
  ExpectAcceptScore(search, 80, {76, 91, 95, 141, 146});
}

TEST(AcceptScore, IsTheNumberThatSetParamsGives) {
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetParams(16, 10, 100000, 75);
  ExpectAcceptScore(search, 75, {20, 49, 55, 102, 124});
}

TEST(AcceptScore, IsReachedByAScoreEqualToIt) {
  // Whatever a pair scores, it reaches 0: no pair is tried at more than one scale, and the search
  // ends after the first pass without a single test.
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetParams(16, 10, 100000, 0);
  const ScriptedCounter counter(FrozenTime());
  LookFor(search, SceneOf(SmallPart(), {.x = 92, .y = 71, .angle_deg = 35}));
  EXPECT_EQ(counter.num_reads(), 3);
}

}  // namespace
}  // namespace orvandel::test
