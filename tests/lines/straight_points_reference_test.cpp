// Flags against the reference form where they are hardest to decide: at the deviation limit itself.

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/line_extracter.h"
#include "tests/lines/contour_shapes.h"
#include "tests/reference/line_extraction.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

void ExpectSameMarks(const CLineExtracter& extracter, const Points& points, int closed) {
  CLineExtracter marker = extracter;
  const int n = static_cast<int>(points.x.size());
  std::vector<int> flags(points.x.size(), 7);
  std::vector<int> reference_flags = flags;
  const int result =
      marker.MarkStraightPoints(points.x.data(), points.y.data(), flags.data(), n, closed);
  EXPECT_EQ(result, ReferenceMarkStraightPoints(extracter, points.x.data(), points.y.data(),
                                                reference_flags.data(), n, closed));
  EXPECT_EQ(flags, reference_flags);
}

/// Seven points along a line of any direction, the middle one off it by about the limit: by the limit
/// itself and by a few last places more and less.
Points AtTheLimit(UniformRandom& random, double limit) {
  const double angle = random.Real(-4, 4);
  const double length = random.OneIn(3) ? 1.0 : random.Real(0.2, 40);
  const double x0 = random.Real(-1000, 1000);
  const double y0 = random.Real(-1000, 1000);
  double off = limit * (random.OneIn(2) ? 1 : -1);
  for (int i = random.Integer(0, 40); i > 0; --i)
    off = std::nextafter(off, random.OneIn(2) ? 0.0 : 2 * off);
  Points points;
  for (int i = 0; i < 7; ++i) {
    const double along = (i - 3) * length;
    const double across = i == 3 ? off : 0.0;
    points.x.push_back(x0 + along * std::cos(angle) - across * std::sin(angle));
    points.y.push_back(y0 + along * std::sin(angle) + across * std::cos(angle));
  }
  return points;
}

TEST(StraightPointsReference, AgreesAtTheLimitOfTheDeviation) {
  UniformRandom random(1);
  int num_straight = 0;
  constexpr int kNumTrials = 40000;
  for (int i = 0; i < kNumTrials; ++i) {
    CLineExtracter extracter;
    if (random.OneIn(4)) extracter.max_deviation = random.Real(1e-3, 3);
    const Points points = AtTheLimit(random, extracter.max_deviation);
    ExpectSameMarks(extracter, points, 0);
    if (testing::Test::HasFailure()) FAIL() << "seed 1, trial " << i;
    std::vector<int> flags(7);
    extracter.MarkStraightPoints(points.x.data(), points.y.data(), flags.data(), 7, 0);
    num_straight += flags[3];
  }
  // Neither side of the limit is missed.
  EXPECT_GT(num_straight, kNumTrials / 4);
  EXPECT_LT(num_straight, kNumTrials * 3 / 4);
}

TEST(StraightPointsReference, AgreesOnContoursOfAnyLength) {
  UniformRandom random(2);
  for (int n = 1; n <= 200; ++n) {
    SCOPED_TRACE(testing::Message() << "seed 2, " << n << " points");
    Points points;
    for (int i = 0; i < n; ++i) {
      points.x.push_back(i + random.Real(-0.3, 0.3));
      points.y.push_back(random.Real(-0.4, 0.4));
    }
    ExpectSameMarks({}, points, 0);
    ExpectSameMarks({}, points, 1);
  }
}

TEST(StraightPointsReference, AgreesOnWildLimitsAndPoints) {
  const double limits[] = {
      0.0, -0.25, 1e-300, 1e-120, 1e150, std::nan(""), std::numeric_limits<double>::infinity()};
  const double wild[] = {
      1e200, -1e200, 1e-200, std::nan(""), std::numeric_limits<double>::infinity(), 0.0};
  UniformRandom random(3);
  for (const double limit : limits) {
    CLineExtracter extracter;
    extracter.max_deviation = limit;
    for (int trial = 0; trial < 300; ++trial) {
      SCOPED_TRACE(testing::Message() << "seed 3, limit " << limit << ", trial " << trial);
      Points points;
      for (int i = 0; i < 20; ++i) {
        points.x.push_back(random.OneIn(6) ? wild[random.Integer(0, 5)] : random.Real(-9, 9));
        points.y.push_back(random.OneIn(6) ? wild[random.Integer(0, 5)] : random.Real(-9, 9));
      }
      ExpectSameMarks(extracter, points, random.Integer(0, 1));
    }
  }
}

}  // namespace
}  // namespace orvandel::test
