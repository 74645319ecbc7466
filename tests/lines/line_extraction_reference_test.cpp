// The extracter and its reference form agree bit for bit, over random contours.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/lines/contour_shapes.h"
#include "tests/lines/random_contours.h"
#include "tests/reference/line_extraction.h"
#include "tests/support/segments.h"

namespace orvandel::test {
namespace {

/// Extracts the same contours both ways and compares segments and flags; returns the number of
/// segments.
std::size_t CompareExtractions(const std::vector<TestContour>& contours,
                               const CLineExtracter& options) {
  const ContourHandle set = MakeSet(contours);
  const ContourHandle reference_set = MakeSet(contours);
  CLineExtracter extracter(options);
  const int result = extracter.Extract(set.get());
  const std::vector<CLineSegment> expected = ReferenceExtract(options, reference_set.get());
  EXPECT_EQ(result, static_cast<int>(expected.size()));
  ExpectSameSegments(extracter.segments, expected);
  for (int c = 0; c < ctd_contour_count(set.get()); ++c)
    EXPECT_EQ(FlagsOf(set, c), FlagsOf(reference_set, c)) << "contour " << c;
  return expected.size();
}

TEST(LineExtractionReference, AgreesOnRandomContours) {
  std::size_t num_segments = 0;
  std::size_t num_joined = 0;
  for (std::uint32_t seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    const std::vector<TestContour> contours = RandomContours(random, 30);
    num_segments += CompareExtractions(contours, CLineExtracter());
    const ContourHandle set = MakeSet(contours);
    for (const CLineSegment& s : ReferenceExtract(CLineExtracter(), set.get()))
      num_joined += s.length == 0 ? 1 : 0;
  }
  // What the seeds reach: many segments, and seams that are joined.
  EXPECT_GT(num_segments, 3000U);
  EXPECT_GT(num_joined, 30U);
}

TEST(LineExtractionReference, AgreesUnderOtherParameters) {
  for (std::uint32_t seed = 1001; seed <= 1200; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    CLineExtracter options;
    options.max_deviation = random.Real(0, 1);
    options.neighbour_offset = random.Integer(1, 9);
    options.max_fit_error = random.Real(0, 2);
    options.min_points = random.Integer(0, 12);
    options.max_join_angle = random.OneIn(4) ? 4.0 : random.Real(0, 0.1);
    CompareExtractions(RandomContours(random, 20), options);
  }
}

TEST(LineExtractionReference, AgreesOnManySegments) {
  // Above 32 and above 64 segments the sort merges.
  UniformRandom random(77);
  std::vector<TestContour> contours;
  for (int i = 0; i < 150; ++i)
    contours.push_back(RandomContour(random).Make());
  EXPECT_GT(CompareExtractions(contours, CLineExtracter()), 128U) << "seed 77";
}

TEST(LineExtractionReference, MarksAgreeAtEveryLengthAndReach) {
  UniformRandom random(9);
  for (int n = 0; n <= 70; ++n) {
    TestContour contour;
    for (int i = 0; i < n; ++i)
      contour.points.push_back({i + random.Real(-0.2, 0.2), random.Real(-0.4, 0.4)});
    std::vector<double> x;
    std::vector<double> y;
    for (const TestPoint& p : contour.points) {
      x.push_back(p.x);
      y.push_back(p.y);
    }
    for (int k = 1; k <= 6; ++k) {
      for (const int closed : {0, 1}) {
        CLineExtracter extracter;
        extracter.neighbour_offset = k;
        std::vector<int> flags(x.size() + 1, 9);  // one behind the contour stays as it is
        std::vector<int> reference_flags = flags;
        const int result =
            extracter.MarkStraightPoints(x.data(), y.data(), flags.data(), n, closed);
        EXPECT_EQ(result, ReferenceMarkStraightPoints(extracter, x.data(), y.data(),
                                                      reference_flags.data(), n, closed));
        EXPECT_EQ(flags, reference_flags)
            << "seed 9, n " << n << ", k " << k << ", closed " << closed;
      }
    }
  }
}

}  // namespace
}  // namespace orvandel::test
