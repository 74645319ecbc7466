#include "tests/plain/chain_comparison.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/qrsis.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/plain/crawl.h"
#include "tests/plain/line_extraction.h"
#include "tests/plain/resampling.h"
#include "tests/plain/sub_canny.h"
#include "tests/search/scripted_counter.h"
#include "tests/support/contour_sets.h"
#include "tests/support/segments.h"

namespace orvandel::test {
namespace {

template <typename T>
bool AreSameBytes(const T* a, const T* b, std::int64_t count) {
  return count == 0 || std::memcmp(a, b, static_cast<std::size_t>(count) * sizeof(T)) == 0;
}

void ExpectSamePixels(const ImagePtr& actual, const ImagePtr& expected) {
  for (int y = 0; y < expected->height; ++y)
    ASSERT_TRUE(AreSameBytes(actual->row[y], expected->row[y], expected->width)) << "row " << y;
}

/// The first cell whose stored point differs, or the number of cells. Positions and directions
/// count where a point is stored.
int FirstDifference(const CEdgeImgComplement& a, const CEdgeImgComplement& b) {
  for (int cell = 0; cell < a.map_size; ++cell) {
    if (a.valid[cell] != b.valid[cell]) return cell;
    if (a.valid[cell] == 0) continue;
    if (!AreSameBits(a.x[cell], b.x[cell]) || !AreSameBits(a.y[cell], b.y[cell]) ||
        !AreSameBits(a.g[cell], b.g[cell])) {
      return cell;
    }
  }
  return a.map_size;
}

void ExpectSameRecord(const CEdgeImgComplement& actual, const CEdgeImgComplement& expected) {
  ASSERT_EQ(actual.width, expected.width);
  ASSERT_EQ(actual.height, expected.height);
  ASSERT_EQ(actual.map_size, expected.map_size);
  ASSERT_EQ(actual.count, expected.count);
  ASSERT_EQ(FirstDifference(actual, expected), expected.map_size);
}

void ExpectSameContours(const ContourHandle& actual_set, const ContourHandle& expected_set) {
  const CCrawler& actual = Fields(actual_set);
  const CCrawler& expected = Fields(expected_set);
  ASSERT_EQ(actual.contour_count, expected.contour_count);
  ASSERT_EQ(actual.point_count, expected.point_count);
  ASSERT_TRUE(AreSameBytes(actual.contours, expected.contours, expected.contour_count));
  ASSERT_TRUE(AreSameBytes(actual.x, expected.x, expected.point_count)) << "x";
  ASSERT_TRUE(AreSameBytes(actual.y, expected.y, expected.point_count)) << "y";
  ASSERT_TRUE(AreSameBytes(actual.g, expected.g, expected.point_count)) << "g";
  ASSERT_TRUE(AreSameBytes(actual.f, expected.f, expected.point_count)) << "f";
}

void ExpectSameEdges(const ImagePtr& image, int threshold) {
  const ImagePtr map = CopyOf(image);
  const ImagePtr plain_map = CopyOf(image);
  CEdgeImgComplement edges;
  CEdgeImgComplement plain_edges;
  ASSERT_EQ(edges.SetSize(image->width, image->height), 0);
  ASSERT_EQ(plain_edges.SetSize(image->width, image->height), 0);
  SubCanny(map.get(), threshold, &edges);
  plain::SubCanny(plain_map.get(), threshold, &plain_edges);
  ExpectSamePixels(map, plain_map);
  ExpectSameRecord(edges, plain_edges);
}

void ExpectSameCrawl(const ContourHandle& set, const ContourHandle& plain_set,
                     const ImagePtr& image, int threshold) {
  constexpr int kMinSize = 10;
  constexpr int kMaxSize = 100000;
  const ImagePtr rest = CopyOf(image);
  const ImagePtr plain_rest = CopyOf(image);
  ASSERT_EQ(ctd_crawl(set.get(), rest.get(), threshold, kMinSize, kMaxSize), 0);
  plain::Crawl(plain_set.get(), plain_rest.get(), threshold, kMinSize, kMaxSize);
  ExpectSamePixels(rest, plain_rest);
  ExpectSameRecord(*ctd_edgeIm(set.get()), *ctd_edgeIm(plain_set.get()));
  ExpectSameContours(set, plain_set);
}

/// Smoothing and sorting have no second form here: their twins stand in tests/contours.
void ExpectSameConditioning(const ContourHandle& set, const ContourHandle& plain_set) {
  ctd_average(set.get());
  ctd_average(plain_set.get());
  ctd_resample(set.get());
  plain::Resample(plain_set.get());
  ExpectSameContours(set, plain_set);
  ASSERT_EQ(Fields(set).point_capacity, Fields(plain_set).point_capacity);
  ctd_sort(set.get(), 1);
  ctd_sort(plain_set.get(), 1);
}

}  // namespace

void ExpectSameStages(const ImagePtr& image, int threshold) {
  SCOPED_TRACE(testing::Message() << "threshold " << threshold);
  ASSERT_NO_FATAL_FAILURE(ExpectSameEdges(image, threshold));
  const ContourHandle set = MakeEmptySet();
  const ContourHandle plain_set = MakeEmptySet();
  ASSERT_NO_FATAL_FAILURE(ExpectSameCrawl(set, plain_set, image, threshold));
  ASSERT_NO_FATAL_FAILURE(ExpectSameConditioning(set, plain_set));

  CLineExtracter extracter;
  extracter.Extract(set.get());
  ExpectSameSegments(extracter.GetSegments(),
                     plain::ExtractSegments(CLineExtracter(), plain_set.get()));
  ExpectSameContours(set, plain_set);  // with the flags of straight stretches
}

int StatusOf(LearningOutcome outcome) {
  if (outcome == LearningOutcome::kNoContour) return 1;
  return outcome == LearningOutcome::kNoSegment ? 4 : 0;
}

int StatusOf(SegmentSearchOutcome outcome) {
  if (outcome == SegmentSearchOutcome::kNoContour) return 2;
  return outcome == SegmentSearchOutcome::kNoSegment ? 4 : 0;
}

Found ExpectSameSearch(const ImagePtr& pattern, const ImagePtr& scene,
                       const plain::SearchOptions& options) {
  const ScriptedCounter no_hurry(FrozenTime());
  QRSIS search;
  search.Initialize();
  search.SetParams(options.crawl.edge_threshold, options.crawl.min_size, options.crawl.max_size,
                   static_cast<int>(options.search.accept_score));
  search.SetMinMaxScale(options.search.min_scale, options.search.max_scale);
  plain::Pattern plain_pattern;
  const int status = TrainOn(search, pattern);
  EXPECT_EQ(status, StatusOf(plain::Train(plain_pattern, CopyOf(pattern).get(), options.crawl)));
  if (status != 0) return {status};

  const ContourHandle plain_scene = MakeEmptySet();
  const SegmentMatch expected =
      plain::Find(plain_pattern, plain_scene.get(), CopyOf(scene).get(), options);
  const Found found = LookFor(search, scene);
  const Similarity& pose = expected.scene_from_pattern;
  ExpectSameResult(
      found, {StatusOf(expected.outcome), pose.x, pose.y, pose.angle, pose.scale, expected.score});
  return found;
}

}  // namespace orvandel::test
