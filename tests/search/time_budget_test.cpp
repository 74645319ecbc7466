// The time budget of a search: its deadline, and where it takes effect. The counter is scripted:
// read 0 is the start, read 1 the test behind the contours, read 2 the one behind the segments;
// from read 3 on the coarse search tests it after a score.

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/segment_engine.h"
#include "tests/search/small_scenes.h"

namespace orvandel::test {
namespace {

constexpr std::uint64_t kMicroseconds = 1000000;  // ticks per second: one tick a microsecond

/// Whether the time is past the deadline when the counter shows `now` from the search's start on, which then
/// ends without a result; else it finds the pattern.
bool IsPast(std::uint64_t now, std::uint64_t start, std::uint64_t rate, TrainedSearch& search) {
  const ScriptedCounter counter([=](int read) { return read == 0 ? start : now; }, rate);
  const Found found = LookFor(search, SceneOf(SmallPart(), kRotated));
  if (found.score > 80) return false;
  ExpectZeroResult(found, 0);
  return true;
}

/// Expects the deadline to be exactly `deadline`, for a counter that shows `start` at first.
void ExpectDeadline(std::uint64_t deadline, int timeout_us, std::uint64_t start,
                    std::uint64_t rate) {
  SCOPED_TRACE("timeout " + std::to_string(timeout_us) + ", rate " + std::to_string(rate));
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetTimeOutValue(timeout_us);
  EXPECT_FALSE(IsPast(deadline, start, rate, search));
  EXPECT_TRUE(IsPast(deadline + 1, start, rate, search));
}

TEST(TimeBudget, IsAMillionMicrosecondsAtFirst) {
  TrainedSearch search(ImageOf(SmallPart()));
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
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetTimeOutValue(15);
  EXPECT_FALSE(IsPast(std::uint64_t{0} - 1, start, kMicroseconds, search));
}

TEST(TimeBudget, ZeroGivesAZeroResultThoughTheSceneHoldsThePattern) {
  TrainedSearch search(ImageOf(SmallPart()));
  LookFor(search, SceneOf(SmallPart(), kRotated));
  search.SetTimeOutValue(0);
  ExpectZeroResult(LookFor(search, SceneOf(SmallPart(), kRotated)), 0);
}

TEST(TimeBudget, SceneWithoutContourComesBeforeTheTime) {
  TrainedSearch search(ImageOf(SmallPart()));
  const ScriptedCounter counter(TimeThatExpiresAtRead(1));
  ExpectZeroResult(LookFor(search, UniformImage()), 2);
}

TEST(TimeBudget, TimeComesBeforeASceneWithoutSegments) {
  TrainedSearch search(ImageOf(SmallPart()));
  {
    const ScriptedCounter counter(TimeThatExpiresAtRead(2));
    ExpectZeroResult(LookFor(search, ImageOf(CurvedPart())), 0);
  }
  const ScriptedCounter counter(TimeThatExpiresAtRead(3));
  ExpectZeroResult(LookFor(search, ImageOf(CurvedPart())), 4);
}

TEST(TimeBudget, UntrainedObjectDoesNotReadTheCounter) {
  // On Windows the first read would take a quarter of a second.
  QRSIS search;
  const ScriptedCounter counter([](int) {
    ADD_FAILURE() << "the counter is read";
    return std::uint64_t{0};
  });
  LookFor(search, UniformImage());
}

/// A search in which every scale is in range, none is accepted, and the time expires at a read.
SegmentMatch ExpiringSearch(int expiring_read, const ImagePtr& scene) {
  SegmentEngine engine(ImageOf(SmallPart()));
  engine.options.accept_score = kUnreachableScore;
  engine.options.min_scale = 0;
  engine.options.max_scale = std::numeric_limits<double>::infinity();
  const ScriptedCounter counter(TimeThatExpiresAtRead(expiring_read));
  return engine.Find(scene);
}
SegmentMatch ExpiringSearch(int expiring_read) {
  return ExpiringSearch(expiring_read, SceneOf(SmallPart(), kRotated));
}

TEST(TimeBudget, OutcomeTellsThatNoPoseWasTried) {
  for (const int read : {1, 2}) {
    const SegmentMatch match = ExpiringSearch(read);
    EXPECT_EQ(match.outcome, SegmentSearchOutcome::kOutOfTime);
    EXPECT_TRUE(match.ran_out_of_time);
    EXPECT_EQ(match.num_poses, 0);
    EXPECT_GT(match.num_contours, 0);
    EXPECT_EQ(match.NumSegments() > 0, read == 2);  // behind the contours no segment is extracted
  }
}

TEST(TimeBudget, OutcomeTellsWhetherTheCoarseSearchWasCutShort) {
  const SegmentMatch hurried = ExpiringSearch(3);
  EXPECT_EQ(hurried.outcome, SegmentSearchOutcome::kPoseDetermined);
  EXPECT_TRUE(hurried.ran_out_of_time);
  const SegmentMatch unhurried = ExpiringSearch(std::numeric_limits<int>::max());
  EXPECT_EQ(unhurried.outcome, SegmentSearchOutcome::kPoseDetermined);
  EXPECT_FALSE(unhurried.ran_out_of_time);
  EXPECT_EQ(unhurried.num_poses, 5 * 5 * unhurried.NumSegments());
}

TEST(TimeBudget, MissingContoursOrSegmentsAreNoLackOfTime) {
  const SegmentMatch no_contour = ExpiringSearch(1, UniformImage());
  EXPECT_EQ(no_contour.outcome, SegmentSearchOutcome::kNoContour);
  EXPECT_FALSE(no_contour.ran_out_of_time);
  const SegmentMatch no_segment = ExpiringSearch(3, ImageOf(CurvedPart()));
  EXPECT_EQ(no_segment.outcome, SegmentSearchOutcome::kNoSegment);
  EXPECT_FALSE(no_segment.ran_out_of_time);
  EXPECT_GT(no_segment.num_contours, 0);
}

TEST(TimeBudget, TimeoutLetsEachSceneSegmentBeScoredOnceMore) {
  const SegmentMatch match = ExpiringSearch(3);  // at the very first score
  ASSERT_GT(match.NumSegments(), 3);
  EXPECT_EQ(match.num_poses, match.NumSegments());
}

TEST(TimeBudget, TimeoutFinishesThePassOverTheScene) {
  // Five scores of the first scene segment and two of the second go by; the third one's test fires.
  const SegmentMatch match = ExpiringSearch(3 + 7);
  EXPECT_EQ(match.num_poses, 8 + (match.NumSegments() - 2));
}

TEST(TimeBudget, TimeoutInTheSecondPassEndsTheSearchAfterIt) {
  const SegmentMatch first = ExpiringSearch(3 + 5 * 3 + 1);
  ASSERT_GT(first.NumSegments(), 4);
  EXPECT_EQ(first.num_poses, 5 * 3 + 2 + (first.NumSegments() - 4));  // still in the first pass
  const SegmentMatch second = ExpiringSearch(3 + 5 * first.NumSegments());
  EXPECT_EQ(second.num_poses, 5 * first.NumSegments() + second.NumSegments());
}

TEST(TimeBudget, ResultOfATimeoutIsThatOfTheReferenceSearch) {
  // Wherever the time expires, the best pose so far is refined and scored.
  const ImagePtr pattern = ImageOf(SmallPart());
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  ReferenceParameters parameters;
  parameters.accept_score = kUnreachableScore;
  ReferencePattern reference;
  ASSERT_EQ(ReferenceTrain(reference, CopyOf(pattern).get(), parameters), 0);
  TrainedSearch search(pattern);
  search.SetParams(16, 10, 100000, kUnreachableScore);
  for (const int expiring_read : {1, 2, 3, 4, 5, 8, 13, 21, 34, 55, 89, 144, 100000}) {
    SCOPED_TRACE("time expires at read " + std::to_string(expiring_read));
    int reference_reads = 1;
    ReferenceSearch reference_search(reference, parameters);
    const Found expected = reference_search.LookForIt(
        CopyOf(scene).get(), [&] { return reference_reads++ >= expiring_read; });
    const ScriptedCounter counter(TimeThatExpiresAtRead(expiring_read));
    ExpectSameResult(LookFor(search, scene), expected);
  }
}

TEST(TimeBudget, RefinementAndFinalScoreAreNotTimed) {
  // Where no scale is in range the coarse search scores nothing and so tests nothing; refinement and final
  // score take no notice of a time that is over.
  SegmentEngine engine(ImageOf(SmallPart()));
  engine.options.min_scale = 100;
  engine.options.max_scale = 200;
  const ImagePtr scene = SceneOf(SmallPart(), kRotated);
  const auto find = [&](const ScriptedCounter::Script& time) {
    const ScriptedCounter counter(time);
    return engine.Find(scene);
  };
  const SegmentMatch unhurried = find(FrozenTime());
  const SegmentMatch expired = find(TimeThatExpiresAtRead(3));
  EXPECT_FALSE(expired.ran_out_of_time);
  EXPECT_EQ(expired.scene_from_pattern, unhurried.scene_from_pattern);
  EXPECT_EQ(expired.score, unhurried.score);
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
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetTimeOutValue(1000);  // a quarter of a second would exceed it
  const SlowlyMeasuredCounter counter;
  EXPECT_GT(LookFor(search, SceneOf(SmallPart(), kRotated)).score, 80);
}

TEST(TimeBudget, EverySearchHasADeadlineOfItsOwn) {
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetTimeOutValue(1000);
  {
    const ScriptedCounter counter([](int) { return std::uint64_t{0}; });
    EXPECT_GT(LookFor(search, SceneOf(SmallPart(), kRotated)).score, 80);
  }
  const ScriptedCounter counter([](int) { return std::uint64_t{999999999}; });
  EXPECT_GT(LookFor(search, SceneOf(SmallPart(), kRotated)).score, 80);
}

}  // namespace
}  // namespace orvandel::test
