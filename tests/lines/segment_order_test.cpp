// The order in which an extraction leaves its segments: most points first, equal counts in the
// reverse of the order in which they were found.

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/lines/contour_shapes.h"
#include "tests/reference/segment_sort.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

/// What identifies a segment of these tests: its count, and the contour that it was found in.
struct Found {
  int num_points;
  int contour;
  bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* stream) {
  *stream << found.num_points << " points of contour " << found.contour;
}

std::vector<Found> FoundIn(const std::vector<CLineSegment>& segments) {
  std::vector<Found> found;
  for (const CLineSegment& s : segments)
    found.push_back({s.num_points, s.contour_index});
  return found;
}

/// Extracts one segment a contour, in the given order of counts.
std::vector<Found> OrderAfterExtraction(const std::vector<int>& counts) {
  std::vector<TestContour> contours;
  for (const int count : counts)
    contours.push_back(ContourOfSegment(count, 0));
  const ContourHandle set = MakeSet(contours);
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  extracter.Extract(set.get());
  return FoundIn(extracter.segments);
}

std::vector<CLineSegment> SegmentsBeforeSorting(const std::vector<int>& counts) {
  std::vector<CLineSegment> segments(counts.size());
  for (std::size_t i = 0; i < counts.size(); ++i) {
    segments[i].num_points = counts[i];
    segments[i].contour_index = static_cast<int>(i);
  }
  return segments;
}

std::vector<Found> OrderByMergeSort(const std::vector<int>& counts) {
  std::vector<CLineSegment> segments = SegmentsBeforeSorting(counts);
  ReferenceSegmentSort(segments);
  return FoundIn(segments);
}

/// The closed form of that order: by count, and by falling index where counts are equal.
std::vector<Found> OrderByDefinition(const std::vector<int>& counts) {
  std::vector<Found> found = FoundIn(SegmentsBeforeSorting(counts));
  std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) {
    return a.num_points != b.num_points ? a.num_points > b.num_points : a.contour > b.contour;
  });
  return found;
}

TEST(SegmentOrder, NoSegmentAndOneSegmentStayAsTheyAre) {
  EXPECT_TRUE(OrderAfterExtraction({}).empty());
  EXPECT_EQ(OrderAfterExtraction({7}), (std::vector<Found>{{7, 0}}));
}

TEST(SegmentOrder, EqualCountsComeOutReversed) {
  EXPECT_EQ(OrderAfterExtraction({10, 12, 10}), (std::vector<Found>{{12, 1}, {10, 2}, {10, 0}}));
  EXPECT_EQ(OrderAfterExtraction({8, 8, 8, 8}),
            (std::vector<Found>{{8, 3}, {8, 2}, {8, 1}, {8, 0}}));
}

TEST(SegmentOrder, LaterStretchOfOneContourComesFirst) {
  TestContour contour = HorizontalContour(30, 0);
  for (std::size_t i = 0; i < contour.points.size(); ++i)
    contour.points[i].f = i == 10 || i == 20 ? 0 : 1;  // runs 0..9, 11..19 and 21..28
  const ContourHandle set = MakeSet({contour});
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  ASSERT_EQ(extracter.Extract(set.get()), 3);
  EXPECT_EQ(extracter.segments[0].num_points, 9);
  EXPECT_EQ(extracter.segments[0].start_x, 0.0);
  EXPECT_EQ(extracter.segments[1].num_points, 8);
  EXPECT_EQ(extracter.segments[2].num_points, 7);

  TestContour halves = HorizontalContour(26, 0);
  for (std::size_t i = 0; i < halves.points.size(); ++i)
    halves.points[i].f = i == 8 || i == 17 || i == 25 ? 0 : 1;  // runs 0..7, 9..16 and 18..24
  const ContourHandle equal = MakeSet({halves});
  ASSERT_EQ(extracter.Extract(equal.get()), 3);
  EXPECT_EQ(extracter.segments[0].start_x, 9.0);
  EXPECT_EQ(extracter.segments[1].start_x, 0.0);
  EXPECT_EQ(extracter.segments[2].start_x, 18.0);
}

TEST(SegmentOrder, MergeSortGivesTheOrderOfTheDefinition) {
  UniformRandom random(41);
  for (const int size : {0, 1, 2, 31, 32, 33, 34, 63, 64, 65, 66, 127, 128, 129, 300}) {
    SCOPED_TRACE(std::to_string(size) + " segments, seed 41");
    std::vector<int> counts;
    for (int i = 0; i < size; ++i)
      counts.push_back(random.Integer(5, 12));
    EXPECT_EQ(OrderByMergeSort(counts), OrderByDefinition(counts));
  }
}

TEST(SegmentOrder, ExtractionAgreesWithTheMergeSortAtEveryRunLength) {
  UniformRandom random(42);
  for (const int size : {2, 3, 31, 32, 33, 34, 63, 64, 65, 66, 96, 97, 128, 129, 200, 300}) {
    SCOPED_TRACE(std::to_string(size) + " segments, seed 42");
    std::vector<int> counts;
    const int most = random.Integer(6, 40);  // from many ties to few
    for (int i = 0; i < size; ++i)
      counts.push_back(random.Integer(5, most));
    EXPECT_EQ(OrderAfterExtraction(counts), OrderByMergeSort(counts));
  }
}

TEST(SegmentOrder, SortedAndReversedInputsComeOutAlike) {
  std::vector<int> rising;
  for (int count = 5; count < 105; ++count)
    rising.push_back(count);
  const std::vector<int> falling(rising.rbegin(), rising.rend());
  EXPECT_EQ(OrderAfterExtraction(rising), OrderByDefinition(rising));
  EXPECT_EQ(OrderAfterExtraction(falling), OrderByDefinition(falling));
}

}  // namespace
}  // namespace orvandel::test
