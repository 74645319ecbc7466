#include "tests/reference/smoothing.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"
#include "tests/support/image_patterns.h"

namespace orvandel::test {
namespace {

TestContour ContourAt(const std::vector<double>& x, const std::vector<double>& y) {
  TestContour contour;
  for (std::size_t k = 0; k < x.size(); ++k)
    contour.points.push_back({x[k], y[k], 0.25 * static_cast<double>(k), 7});
  return contour;
}

TEST(Smoothing, FivePointsAreLeftAlone) {
  for (std::size_t n = 1; n <= 5; ++n) {
    std::vector<double> x = {0, 10, 0, 10, 0};
    std::vector<double> y = {5, 0, 5, 0, 5};
    x.resize(n);
    y.resize(n);
    const ContourHandle set = MakeSet({ContourAt(x, y)});
    EXPECT_EQ(ctd_average(set.get()), 0);
    EXPECT_EQ(Xs(set, 0), x);
    EXPECT_EQ(Ys(set, 0), y);
  }
}

TEST(Smoothing, SixPointsByHand) {
  const ContourHandle set = MakeSet({ContourAt({0, 3, 6, 12, 9, 60}, {30, 0, 0, 0, 0, 0})});
  EXPECT_EQ(ctd_average(set.get()), 0);
  // (0+3+6)/3, (0+3+6+12)/4, (0+3+6+12+9)/5, (3+6+12+9+60)/5, (6+12+9+60)/4, (12+9+60)/3
  EXPECT_EQ(Xs(set, 0), (std::vector<double>{3, 5.25, 6, 18, 21.75, 27}));
  EXPECT_EQ(Ys(set, 0), (std::vector<double>{10, 7.5, 6, 0, 0, 0}));
}

TEST(Smoothing, NewPositionsComeFromTheOldOnesOnly) {
  // A single spike spreads over five points and no further.
  std::vector<double> spike(11);
  spike[5] = 5;
  const ContourHandle set = MakeSet({ContourAt(spike, spike)});
  ctd_average(set.get());
  EXPECT_EQ(Xs(set, 0), (std::vector<double>{0, 0, 0, 1, 1, 1, 1, 1, 0, 0, 0}));
}

TEST(Smoothing, AStraightEvenContourStaysButForItsEnds) {
  // Inside, a point is the mean of itself and its neighbours; near the ends the windows are lopsided:
  // (p0 + p1 + p2) / 3 is p1, and (p0 + p1 + p2 + p3) / 4 lies halfway from p1 to p2.
  std::vector<double> x, y;
  for (int k = 0; k < 20; ++k) {
    x.push_back(100 + 0.3 * k);
    y.push_back(50 - 0.7 * k);
  }
  const ContourHandle set = MakeSet({ContourAt(x, y)});
  ctd_average(set.get());
  const std::vector<double> smooth_x = Xs(set, 0);
  const std::vector<double> smooth_y = Ys(set, 0);
  for (std::size_t k = 2; k < 18; ++k) {
    EXPECT_NEAR(smooth_x[k], x[k], 1e-12);  // pixels; doubles near 100 resolve 1e-14
    EXPECT_NEAR(smooth_y[k], y[k], 1e-12);
  }
  EXPECT_NEAR(smooth_x[0], x[1], 1e-12);
  EXPECT_NEAR(smooth_x[1], 100 + 0.3 * 1.5, 1e-12);
  EXPECT_NEAR(smooth_x[18], 100 + 0.3 * 17.5, 1e-12);
  EXPECT_NEAR(smooth_x[19], x[18], 1e-12);
  // No point leaves the line.
  for (std::size_t k = 0; k < 20; ++k)
    EXPECT_NEAR(0.7 * (smooth_x[k] - 100) + 0.3 * (smooth_y[k] - 50), 0, 1e-12);
}

TEST(Smoothing, AClosedContourIsNotWrappedAround) {
  TestContour ring = ContourAt({0, 3, 6, 12, 9, 60}, {30, 0, 0, 0, 0, 0});
  ring.closed = true;
  const ContourHandle set = MakeSet({ring});
  ctd_average(set.get());
  EXPECT_EQ(Xs(set, 0), (std::vector<double>{3, 5.25, 6, 18, 21.75, 27}));
}

TEST(Smoothing, DirectionsFlagsAndRecordsStay) {
  const ContourHandle set = MakeSet({ContourAt({0, 3, 6, 12, 9, 60}, {30, 0, 0, 0, 0, 0})});
  const double* const x = Fields(set).x;
  ctd_average(set.get());
  EXPECT_EQ(Fields(set).x, x);  // in place
  EXPECT_EQ(ctd_contour_size(set.get(), 0), 6);
  for (int k = 0; k < 6; ++k) {
    EXPECT_EQ(ctd_contour_g(set.get(), 0, k), 0.25 * k);
    EXPECT_EQ(ctd_contour_f(set.get(), 0, k), 7u);
  }
}

TEST(Smoothing, TheRunningSumKeepsTheRoundingOfWhatHasLeft) {
  // 1e16 swallows the ones; once it has left, the running sum lacks what it swallowed.
  const std::vector<double> x = {1e16, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  const ContourHandle set = MakeSet({ContourAt(x, x)});
  ctd_average(set.get());
  // 1e16 + 1 is 1e16 (ties to even), four times over; minus 1e16 leaves 0, plus 1 is 1, and so on.
  const std::vector<double> smooth = Xs(set, 0);
  EXPECT_EQ(smooth[2], 1e16 / 5);
  for (std::size_t i = 3; i <= 7; ++i)
    EXPECT_EQ(smooth[i], 1.0 / 5) << i;
}

TEST(Smoothing, NoContoursIsFine) {
  const ContourHandle set = MakeEmptySet();
  EXPECT_EQ(ctd_average(set.get()), 0);
  EXPECT_EQ(ctd_point_count(set.get()), 0);
}

TEST(Smoothing, EveryContourOfTheSetMatchesThePlainMeanBitForBit) {
  constexpr unsigned kSeed = 61;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int i = 0; i < 50; ++i) {
    std::vector<TestContour> contours;
    const int num_contours = 1 + Below(random, 6);
    for (int c = 0; c < num_contours; ++c) {
      TestContour contour;
      const int num_points = Below(random, 70);
      for (int k = 0; k < num_points; ++k)
        contour.points.push_back({Below(random, 1000000) / 997.0, Below(random, 1000000) / 991.0});
      contours.push_back(contour);
    }
    const ContourHandle set = MakeSet(contours);
    ctd_sort(set.get(), i % 2);  // contours are found through their records
    std::vector<std::vector<double>> expected_x, expected_y;
    for (int c = 0; c < ctd_contour_count(set.get()); ++c) {
      expected_x.push_back(ReferenceSmoothed(Xs(set, c)));
      expected_y.push_back(ReferenceSmoothed(Ys(set, c)));
    }
    ctd_average(set.get());
    for (int c = 0; c < ctd_contour_count(set.get()); ++c) {
      ASSERT_EQ(Xs(set, c), expected_x[static_cast<std::size_t>(c)]);
      ASSERT_EQ(Ys(set, c), expected_y[static_cast<std::size_t>(c)]);
    }
  }
}

}  // namespace
}  // namespace orvandel::test
