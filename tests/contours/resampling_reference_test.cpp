#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/reference/resampling.h"
#include "tests/support/contour_sets.h"
#include "tests/support/image_patterns.h"
#include "tests/support/same_bits.h"
#include "tests/support/simd_levels.h"

// Resampling against its readable second formulation, bit for bit.
namespace orvandel::test {
namespace {

std::vector<TestPoint> PointsOf(const ContourHandle& set, int i) {
  std::vector<TestPoint> points;
  for (int k = 0; k < ctd_contour_size(set.get(), i); ++k)
    points.push_back({ctd_contour_x(set.get(), i, k), ctd_contour_y(set.get(), i, k),
                      ctd_contour_g(set.get(), i, k), ctd_contour_f(set.get(), i, k)});
  return points;
}

void ExpectSameResampling(const ContourHandle& set) {
  const int num_in = ctd_point_count(set.get());
  std::vector<std::vector<TestPoint>> expected;
  int num_out = 0;
  for (int i = 0; i < ctd_contour_count(set.get()); ++i) {
    expected.push_back(
        ReferenceResampled(PointsOf(set, i), Fields(set).step, Fields(set).min_dist));
    num_out += static_cast<int>(expected.back().size());
  }
  ASSERT_EQ(ctd_resample(set.get()), 0);
  ASSERT_EQ(ctd_point_count(set.get()), num_out);
  if (num_in > 0) {
    ASSERT_EQ(Fields(set).point_capacity, ReferenceCapacity(num_in, num_out));
  }
  int start = 0;
  for (int i = 0; i < ctd_contour_count(set.get()); ++i) {
    const std::vector<TestPoint>& points = expected[static_cast<std::size_t>(i)];
    ASSERT_EQ(ctd_contour_size(set.get(), i), static_cast<int>(points.size()));
    if (num_in > 0) {
      ASSERT_EQ(Fields(set).contours[i].start, start);
    }
    start += ctd_contour_size(set.get(), i);
    for (int k = 0; k < ctd_contour_size(set.get(), i); ++k) {
      const TestPoint& p = points[static_cast<std::size_t>(k)];
      ASSERT_TRUE(SameBits(ctd_contour_x(set.get(), i, k), p.x)) << i << ' ' << k;
      ASSERT_TRUE(SameBits(ctd_contour_y(set.get(), i, k), p.y)) << i << ' ' << k;
      ASSERT_TRUE(SameBits(ctd_contour_g(set.get(), i, k), p.g)) << i << ' ' << k;
      ASSERT_EQ(ctd_contour_f(set.get(), i, k), p.f) << i << ' ' << k;
    }
  }
}

/// A contour that wanders on in steps of 0 to `stride` pixels.
TestContour RandomWalk(int num_points, double stride, UniformRandom& random) {
  TestContour contour;
  double x = random.Real(0, 600);
  double y = random.Real(0, 400);
  double heading = random.Real(0, kTwoPi);
  for (int k = 0; k < num_points; ++k) {
    contour.points.push_back(
        {x, y, random.Real(-kPi, kTwoPi),
         Below(random, 3) == 0 ? static_cast<std::uint32_t>(Below(random, 9)) : 0});
    heading += random.Real(-0.8, 0.8);
    const double length = Below(random, 8) == 0 ? 0 : random.Real(0, stride);
    x += length * std::cos(heading);
    y -= length * std::sin(heading);
  }
  contour.closed = Below(random, 2) == 1;
  return contour;
}

class ResamplingReference : public AtEverySimdLevel {};
ORVANDEL_AT_EVERY_SIMD_LEVEL(ResamplingReference);

TEST_P(ResamplingReference, RandomWalks) {
  constexpr unsigned kSeed = 71;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  // Multiples of these steps are exact, so it does not matter how they are made.
  constexpr double kSteps[] = {1.0, 0.5, 0.75, 2.0, 0.125};
  constexpr double kMinDists[] = {0.6, 0.0, 1.5, -1.0};
  for (int i = 0; i < 600; ++i) {
    std::vector<TestContour> contours;
    const int num_contours = Below(random, 20);
    for (int c = 0; c < num_contours; ++c)
      contours.push_back(RandomWalk(Below(random, 40), random.Real(0.2, 12), random));
    const ContourHandle set = MakeSet(contours);
    Fields(set).step = kSteps[Below(random, 5)];
    Fields(set).min_dist = kMinDists[Below(random, 4)];
    if (i % 3 > 0) ctd_sort(set.get(), i % 3 - 1);
    ExpectSameResampling(set);
    if (testing::Test::HasFatalFailure()) return;  // one report is enough
  }
}

TEST_P(ResamplingReference, AgainAndAgain) {
  constexpr unsigned kSeed = 72;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const ContourHandle set = MakeSet({RandomWalk(300, 3, random), RandomWalk(50, 20, random)});
  for (int i = 0; i < 5; ++i) {
    ExpectSameResampling(set);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST_P(ResamplingReference, PositionsAndDirectionsOutOfRange) {
  constexpr unsigned kSeed = 73;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const double inf = std::numeric_limits<double>::infinity();
  const double kOdd[] = {std::nan(""), inf, -inf, 1e300, -1e300, 1e9, -0.0};
  for (int i = 0; i < 300; ++i) {
    TestContour contour = RandomWalk(4 + Below(random, 12), 3, random);
    for (int hit = 0; hit < 2; ++hit) {
      TestPoint& p = contour.points[static_cast<std::size_t>(Below(random, 4))];
      double* const numbers[] = {&p.x, &p.y, &p.g};
      *numbers[Below(random, 3)] = kOdd[Below(random, 7)];
    }
    const ContourHandle set = MakeSet({contour, RandomWalk(9, 3, random)});
    ExpectSameResampling(set);
    if (testing::Test::HasFatalFailure()) return;  // one report is enough
  }
}

}  // namespace
}  // namespace orvandel::test
