#include "tests/reference/chain_comparison.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/qrsis.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/reference/stages.h"
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
  const ImagePtr reference_map = CopyOf(image);
  CEdgeImgComplement edges;
  CEdgeImgComplement reference_edges;
  ASSERT_EQ(edges.SetSize(image->width, image->height), 0);
  ASSERT_EQ(reference_edges.SetSize(image->width, image->height), 0);
  SubCanny(map.get(), threshold, &edges);
  ReferenceSubCanny(reference_map.get(), threshold, reference_edges);
  ExpectSamePixels(map, reference_map);
  ExpectSameRecord(edges, reference_edges);
}

void ExpectSameCrawl(const ContourHandle& set, const ContourHandle& reference_set,
                     const ImagePtr& image, int threshold) {
  constexpr int kMinSize = 10;
  constexpr int kMaxSize = 100000;
  const ImagePtr rest = CopyOf(image);
  const ImagePtr reference_rest = CopyOf(image);
  ASSERT_EQ(ctd_crawl(set.get(), rest.get(), threshold, kMinSize, kMaxSize), 0);
  kReferenceStages.crawl(reference_set.get(), reference_rest.get(), threshold, kMinSize, kMaxSize);
  ExpectSamePixels(rest, reference_rest);
  ExpectSameRecord(*ctd_edgeIm(set.get()), *ctd_edgeIm(reference_set.get()));
  ExpectSameContours(set, reference_set);
}

void ExpectSameConditioning(const ContourHandle& set, const ContourHandle& reference_set) {
  ctd_average(set.get());
  kReferenceStages.smooth(reference_set.get());
  ctd_resample(set.get());
  kReferenceStages.resample(reference_set.get());
  ExpectSameContours(set, reference_set);
  ctd_sort(set.get(), 1);
  ctd_sort(reference_set.get(), 1);
}

}  // namespace

void ExpectSameStages(const ImagePtr& image, int threshold) {
  SCOPED_TRACE(testing::Message() << "threshold " << threshold);
  ASSERT_NO_FATAL_FAILURE(ExpectSameEdges(image, threshold));
  const ContourHandle set = MakeEmptySet();
  const ContourHandle reference_set = MakeEmptySet();
  ASSERT_NO_FATAL_FAILURE(ExpectSameCrawl(set, reference_set, image, threshold));
  ASSERT_NO_FATAL_FAILURE(ExpectSameConditioning(set, reference_set));

  CLineExtracter extracter;
  extracter.Extract(set.get());
  ExpectSameSegments(extracter.GetSegments(),
                     kReferenceStages.extract_segments(reference_set.get()));
  ExpectSameContours(set, reference_set);  // with the flags of straight ranges
}

Found ExpectSameSearch(const ImagePtr& pattern, const ImagePtr& scene,
                       const ReferenceParameters& parameters) {
  const ScriptedCounter no_hurry(FrozenTime());
  QRSIS search;
  search.Initialize();
  search.SetParams(parameters.edge_threshold, parameters.min_size, parameters.max_size,
                   static_cast<int>(parameters.accept_score));
  search.SetMinMaxScale(parameters.min_scale, parameters.max_scale);
  ReferencePattern reference;
  const int status = TrainOn(search, pattern);
  EXPECT_EQ(status, ReferenceTrain(reference, CopyOf(pattern).get(), parameters, kReferenceStages));
  if (status != 0) return {status};

  ReferenceSearch reference_search(reference, parameters, kReferenceStages);
  const Found found = LookFor(search, scene);
  ExpectSameResult(found, reference_search.LookForIt(CopyOf(scene).get(), [] { return false; }));
  return found;
}

}  // namespace orvandel::test
