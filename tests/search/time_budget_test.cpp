// The time budget of a search: its deadline, and where it takes effect. The counter is scripted:
// read 0 is the start, read 1 the test behind the contours, read 2 the one behind the segments;
// from read 3 on the coarse search tests it after a score.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/search/plain_pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"

namespace orvandel::test {
namespace {

constexpr std::uint64_t kMicroseconds = 1000000;  // ticks per second: one tick a microsecond
constexpr std::uint64_t kNever = std::numeric_limits<std::int64_t>::max();
constexpr int kUnreachable = 101;  // an accept score that no hypothesis has

const render::Pose kTurned{.x = 92, .y = 71, .angle_deg = 35};

/// Whether the time is past the deadline when the counter shows `now` behind the contours. If it
/// is, the search ends there; else it ends at the next test, where the time is up for certain.
bool IsPast(std::uint64_t now, std::uint64_t start, std::uint64_t rate, TrainedSearch& search) {
  ScriptedCounter counter([=](int read) { return read == 0   ? start
                                                 : read == 1 ? now
                                                             : kNever; },
                          rate);
  const Found found = LookFor(search, SceneOf(SmallPart(), kTurned));
  ExpectZeroResult(found, 0);
  EXPECT_TRUE(counter.num_reads() == 2 || counter.num_reads() == 3);
  return counter.num_reads() == 2;
}

/// Expects the deadline to be exactly `deadline`, for a counter that shows `start` at first.
void ExpectDeadline(std::uint64_t deadline, int timeout_us, std::uint64_t start,
                    std::uint64_t rate) {
  SCOPED_TRACE("timeout " + std::to_string(timeout_us) + ", rate " + std::to_string(rate));
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetTimeOutValue(timeout_us);
  EXPECT_FALSE(IsPast(deadline, start, rate, search));
  EXPECT_TRUE(IsPast(deadline + 1, start, rate, search));
}

TEST(TimeBudget, IsAMillionMicrosecondsAtFirst) {
  TrainedSearch search(PictureOf(SmallPart()));
  EXPECT_FALSE(IsPast(1000500, 500, kMicroseconds, search));
  EXPECT_TRUE(IsPast(1000501, 500, kMicroseconds, search));
}

TEST(TimeBudget, DeadlineIsStartPlusTicksOfTheTimeout) {
  ExpectDeadline(1500, 1000, 500, kMicroseconds);
  ExpectDeadline(500 + 3000000, 1000, 500, 3000000000);  // 1 ms at 3 GHz
}

TEST(TimeBudget, TicksOfTheTimeoutAreTruncated) {
  ExpectDeadline(7, 1, 7, 999999);
  ExpectDeadline(8, 1, 7, 1000000);
  ExpectDeadline(8, 1, 7, 1999999);
  ExpectDeadline(7 + 4, 3, 7, 1666666);  // 4.999998
}

TEST(TimeBudget, ZeroEndsTheSearchOnceTheCounterMoves) {
  ExpectDeadline(500, 0, 500, kMicroseconds);
}

TEST(TimeBudget, ValuesOutOfRangeBecomeTheNearerBound) {
  ExpectDeadline(500, -5, 500, kMicroseconds);
  ExpectDeadline(500 + 3999000, 3999001, 500, kMicroseconds);
}

TEST(TimeBudget, LargestTimeoutFitsAtAnyRealisticRate) {
  // 3999000 * 999999999999 is 3.998999999996001e18, below 2^63.
  ExpectDeadline(3998999999996, 3999000, 0, 999999999999);
}

TEST(TimeBudget, CounterIsComparedAsASignedNumber) {
  // Ten ticks before the counter wraps, with a deadline five ticks behind that.
  const std::uint64_t start = std::uint64_t{0} - 10;
  ExpectDeadline(5, 15, start, kMicroseconds);
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetTimeOutValue(15);
  EXPECT_FALSE(IsPast(std::uint64_t{0} - 1, start, kMicroseconds, search));
}

TEST(TimeBudget, ZeroGivesAZeroResultThoughTheSceneHoldsThePattern) {
  TrainedSearch search(PictureOf(SmallPart()));
  LookFor(search, SceneOf(SmallPart(), kTurned));
  search.SetTimeOutValue(0);
  ExpectZeroResult(LookFor(search, SceneOf(SmallPart(), kTurned)), 0);
}

TEST(TimeBudget, SceneWithoutContourComesBeforeTheTime) {
  TrainedSearch search(PictureOf(SmallPart()));
  const ScriptedCounter counter(TimeThatExpiresAtRead(1));
  ExpectZeroResult(LookFor(search, UniformPicture()), 2);
  EXPECT_EQ(counter.num_reads(), 1);
}

TEST(TimeBudget, TimeComesBeforeASceneWithoutSegments) {
  TrainedSearch search(PictureOf(SmallPart()));
  {
    const ScriptedCounter counter(TimeThatExpiresAtRead(2));
    ExpectZeroResult(LookFor(search, PictureOf(CurvedPart())), 0);
    EXPECT_EQ(counter.num_reads(), 3);
  }
  const ScriptedCounter counter(TimeThatExpiresAtRead(3));
  ExpectZeroResult(LookFor(search, PictureOf(CurvedPart())), 4);
  EXPECT_EQ(counter.num_reads(), 3);
}

TEST(TimeBudget, UntrainedObjectDoesNotReadTheCounter) {
  QRSIS search;
  const ScriptedCounter counter(FrozenTime());
  LookFor(search, UniformPicture());
  EXPECT_EQ(counter.num_reads(), 0);
}

TEST(TimeBudget, CounterIsReadOnceAfterEveryScore) {
  // All scales are in range and none is accepted: five scores for each pair of a segment of the
  // pattern, of which five are tried, with one of the scene.
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetParams(16, 10, 100000, kUnreachable);
  search.SetMinMaxScale(0, std::numeric_limits<double>::infinity());
  const ScriptedCounter counter(FrozenTime());
  LookFor(search, SceneOf(SmallPart(), kTurned));
  CLineExtracter scene_lines;
  const int num_segments = scene_lines.Extract(search.GetCrawlerSceneData());
  ASSERT_GT(num_segments, 3);
  EXPECT_EQ(counter.num_reads(), 3 + 5 * 5 * num_segments);
}

/// Number of reads of a search in which every scale is in range, none is accepted, and the time
/// expires at a read; and the number of the scene's segments.
struct ReadsAndSegments {
  int num_reads;
  int num_segments;
};

ReadsAndSegments ReadsOfExpiringSearch(int expiring_read) {
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetParams(16, 10, 100000, kUnreachable);
  search.SetMinMaxScale(0, std::numeric_limits<double>::infinity());
  const ScriptedCounter counter(TimeThatExpiresAtRead(expiring_read));
  EXPECT_EQ(LookFor(search, SceneOf(SmallPart(), kTurned)).status, 0);
  CLineExtracter scene_lines;
  return {counter.num_reads(), scene_lines.Extract(search.GetCrawlerSceneData())};
}

TEST(TimeBudget, TimeoutLetsEachSceneSegmentBeScoredOnceMore) {
  const auto [num_reads, num_segments] = ReadsOfExpiringSearch(3);  // at the very first score
  EXPECT_EQ(num_reads, 3 + num_segments);
}

TEST(TimeBudget, TimeoutFinishesThePassOverTheScene) {
  // Five scores of the first scene segment and two of the second go by; the third one's test fires.
  const auto [num_reads, num_segments] = ReadsOfExpiringSearch(3 + 7);
  EXPECT_EQ(num_reads, 3 + 8 + (num_segments - 2));
}

TEST(TimeBudget, TimeoutInTheSecondPassEndsTheSearchAfterIt) {
  const auto [first_reads, num_segments] = ReadsOfExpiringSearch(3 + 5 * 3 + 1);
  ASSERT_GT(num_segments, 4);
  EXPECT_EQ(first_reads, 3 + 5 * 3 + 2 + (num_segments - 4));  // still in the first pass
  const auto [second_reads, same_segments] = ReadsOfExpiringSearch(3 + 5 * num_segments);
  EXPECT_EQ(second_reads, 3 + 5 * num_segments + same_segments);
}

TEST(TimeBudget, ResultOfATimeoutIsThatOfThePlainSearch) {
  // Wherever the time expires, the best pose so far is refined and scored.
  const ImagePtr pattern = PictureOf(SmallPart());
  const ImagePtr scene = SceneOf(SmallPart(), kTurned);
  PlainParameters parameters;
  parameters.accept_score = kUnreachable;
  PlainPattern plain;
  ASSERT_EQ(PlainTrain(plain, CopyOf(pattern).get(), parameters), 0);
  TrainedSearch search(pattern);
  search.SetParams(16, 10, 100000, kUnreachable);
  for (const int expiring_read : {1, 2, 3, 4, 5, 8, 13, 21, 34, 55, 89, 144, 100000}) {
    SCOPED_TRACE("time expires at read " + std::to_string(expiring_read));
    int plain_reads = 1;
    PlainSearch plain_search(plain, parameters);
    const Found expected =
        plain_search.LookForIt(CopyOf(scene).get(), [&] { return plain_reads++ >= expiring_read; });
    const ScriptedCounter counter(TimeThatExpiresAtRead(expiring_read));
    ExpectSameResult(LookFor(search, scene), expected);
    EXPECT_EQ(counter.num_reads(), plain_reads);
  }
}

TEST(TimeBudget, RefinementAndFinalScoreAreNotTimed) {
  // Where no scale is in range the coarse search scores nothing and so tests nothing; refinement
  // and final score follow all the same.
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetMinMaxScale(100, 200);
  const ScriptedCounter counter(FrozenTime());
  EXPECT_EQ(LookFor(search, SceneOf(SmallPart(), kTurned)).status, 0);
  EXPECT_EQ(counter.num_reads(), 3);
}

/// A counter whose rate takes a while to find out, as where it has to be measured.
class SlowlyMeasuredCounter : public TickCounter {
 public:
  SlowlyMeasuredCounter() { ReplaceProcessTickCounter(this); }
  ~SlowlyMeasuredCounter() override { ReplaceProcessTickCounter(nullptr); }
  std::uint64_t Read() override { return now_; }
  std::uint64_t TicksPerSecond() override {
    now_ += 250000;
    return 1000000;
  }

 private:
  std::uint64_t now_ = 0;
};

TEST(TimeBudget, MeasuringTheRateIsNotCharged) {
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetTimeOutValue(1000);  // a quarter of a second would exceed it
  const SlowlyMeasuredCounter counter;
  EXPECT_GT(LookFor(search, SceneOf(SmallPart(), kTurned)).score, 80);
}

TEST(TimeBudget, EverySearchHasADeadlineOfItsOwn) {
  TrainedSearch search(PictureOf(SmallPart()));
  search.SetTimeOutValue(1000);
  {
    const ScriptedCounter counter([](int) { return std::uint64_t{0}; });
    EXPECT_GT(LookFor(search, SceneOf(SmallPart(), kTurned)).score, 80);
  }
  const ScriptedCounter counter([](int) { return std::uint64_t{999999999}; });
  EXPECT_GT(LookFor(search, SceneOf(SmallPart(), kTurned)).score, 80);
}

}  // namespace
}  // namespace orvandel::test
