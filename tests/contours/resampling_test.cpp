#include "tests/reference/resampling.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

/// Points along a row, at y = 4.
TestContour AlongX(const std::vector<double>& x) {
  TestContour contour;
  for (const double value : x)
    contour.points.push_back({value, 4, 0, 0});
  return contour;
}

std::vector<double> ResampledAlongX(const std::vector<double>& x, double step = 1.0,
                                    double min_dist = 0.6) {
  const ContourHandle set = MakeSet({AlongX(x)});
  Fields(set).step = step;
  Fields(set).min_dist = min_dist;
  EXPECT_EQ(ctd_resample(set.get()), 0);
  for (int k = 0; k < ctd_contour_size(set.get(), 0); ++k)
    EXPECT_EQ(ctd_contour_y(set.get(), 0, k), 4.0);
  return Xs(set, 0);
}

using Row = std::vector<double>;

TEST(Resampling, AnEvenContourComesOutAsItIs) {
  const Row even = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  EXPECT_EQ(ResampledAlongX(even), even);
}

TEST(Resampling, ALongPieceIsFilledUpToTheLastStepBeforeItsTarget) {
  // Toward 3.4: 1, 2, 3 (0.4 left). Toward 3: 1, 2 (exactly one step left).
  EXPECT_EQ(ResampledAlongX({0, 3.4, 5}), (Row{0, 1, 2, 3, 5}));
  EXPECT_EQ(ResampledAlongX({0, 3, 5}), (Row{0, 1, 2, 5}));
}

TEST(Resampling, EachPieceStartsAtTheLastEmittedPoint) {
  // From 2 (not 3) toward 5.5: 3, 4, 5.
  EXPECT_EQ(ResampledAlongX({0, 3, 5.5, 9}), (Row{0, 1, 2, 3, 4, 5, 9}));
}

TEST(Resampling, APieceShorterThanTheStepStillEmitsOnePointBeyondItsTarget) {
  EXPECT_EQ(ResampledAlongX({0, 0.75, 5}), (Row{0, 1, 5}));
}

TEST(Resampling, PointsNearerThanMinDistArePassedOver) {
  // From 0: 0.25 and 0.5 are too near, 0.75 is not; one step takes it to 1. From 1: 1, 1.25, 1.5 are
  // too near, 1.75 gives 2; then 2.75 gives 3, and the last point stays.
  Row quarters;
  for (int k = 0; k <= 12; ++k)
    quarters.push_back(0.25 * k);
  EXPECT_EQ(ResampledAlongX(quarters), (Row{0, 1, 2, 3, 3}));
}

TEST(Resampling, APointAtMinDistIsNotPassedOver) {
  // 0.5 is a target: from 0 through 0.5 to 1. With 0.75 it is passed over; the last but one, 0.5 as
  // well, is then the target all the same.
  EXPECT_EQ(ResampledAlongX({0, 0.5, 10, 20}, 1.0, 0.5), (Row{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 20}));
  EXPECT_EQ(ResampledAlongX({0, 0.5, 0.5, 20}, 1.0, 0.75), (Row{0, 1, 20}));
  EXPECT_EQ(ResampledAlongX({0, 0.5, 0.5, 20}, 1.0, 0.5), (Row{0, 1, 0, 20}));
}

TEST(Resampling, PassingOverStopsAtTheLastPointButOne) {
  EXPECT_EQ(ResampledAlongX({0, 0.125, 0.25, 0.375}), (Row{0, 1, 0.375}));
}

TEST(Resampling, TheStepIsASetting) {
  EXPECT_EQ(ResampledAlongX({0, 2, 4}, 0.5), (Row{0, 0.5, 1, 1.5, 4}));
  EXPECT_EQ(ResampledAlongX({0, 10, 13}, 4.0), (Row{0, 4, 8, 13}));
}

TEST(Resampling, AStepNotAboveZeroCountsAsOne) {
  for (const double step : {0.0, -0.0, -1.0, -1e300, std::nan("")})
    EXPECT_EQ(ResampledAlongX({0, 3.4, 5}, step), (Row{0, 1, 2, 3, 5})) << step;
}

TEST(Resampling, YGrowsDownwards) {
  // A 3-4-5 triangle: 1 along it is (0.6, 0.8).
  TestContour slanted;
  slanted.points = {{0, 0, 0, 0}, {3, 4, 0, 0}, {9, 9, 0, 0}};
  const ContourHandle set = MakeSet({slanted});
  ctd_resample(set.get());
  ASSERT_EQ(ctd_contour_size(set.get(), 0), 6);
  for (int k = 0; k <= 4; ++k) {
    EXPECT_NEAR(ctd_contour_x(set.get(), 0, k), 0.6 * k, 1e-14);  // pixels
    EXPECT_NEAR(ctd_contour_y(set.get(), 0, k), 0.8 * k, 1e-14);
  }
}

TEST(Resampling, OnePointBecomesTwo) {
  TestContour single;
  single.points = {{3.5, 4.5, 1.5, 9}};
  const ContourHandle set = MakeSet({single});
  ctd_resample(set.get());
  ASSERT_EQ(ctd_contour_size(set.get(), 0), 2);
  ASSERT_EQ(ctd_point_count(set.get()), 2);
  for (int k = 0; k < 2; ++k) {
    EXPECT_EQ(ctd_contour_x(set.get(), 0, k), 3.5);
    EXPECT_EQ(ctd_contour_y(set.get(), 0, k), 4.5);
    EXPECT_EQ(ctd_contour_g(set.get(), 0, k), 1.5);
    EXPECT_EQ(ctd_contour_f(set.get(), 0, k), 9u);
  }
}

TEST(Resampling, TwoPointsStayHoweverFarApart) {
  EXPECT_EQ(ResampledAlongX({0, 50}), (Row{0, 50}));
  EXPECT_EQ(ResampledAlongX({0, 0.125}), (Row{0, 0.125}));
}

TEST(Resampling, ASetWithoutPointsIsLeftAlone) {
  const ContourHandle set = MakeEmptySet();
  EXPECT_EQ(ctd_resample(set.get()), 0);
  EXPECT_EQ(Fields(set).x, nullptr);
  EXPECT_EQ(Fields(set).point_capacity, 0);

  const ContourHandle empty_contour = MakeSet({TestContour{}});
  EXPECT_EQ(ctd_resample(empty_contour.get()), 0);
  EXPECT_EQ(ctd_contour_count(empty_contour.get()), 1);
  EXPECT_EQ(ctd_contour_size(empty_contour.get(), 0), 0);
  EXPECT_EQ(ctd_point_count(empty_contour.get()), 0);
}

TEST(Resampling, AnEmptyContourBetweenOthersStaysEmpty) {
  const ContourHandle set = MakeSet({AlongX({0, 5}), TestContour{}, AlongX({7, 9})});
  ctd_resample(set.get());
  EXPECT_EQ(ctd_contour_count(set.get()), 3);
  EXPECT_EQ(Xs(set, 0), (Row{0, 5}));
  EXPECT_EQ(ctd_contour_size(set.get(), 1), 0);
  EXPECT_EQ(Fields(set).contours[1].start, 2);
  EXPECT_EQ(Xs(set, 2), (Row{7, 9}));
}

TEST(Resampling, ASortedSetComesOutInRecordOrder) {
  TestContour ring = AlongX({100, 102, 104});
  ring.closed = true;
  const ContourHandle set = MakeSet({AlongX({0, 1, 2, 3, 4}), ring, AlongX({50, 60})});
  ctd_sort(set.get(), 0);
  ctd_resample(set.get());
  EXPECT_EQ(Xs(set, 0), (Row{50, 60}));
  EXPECT_EQ(Xs(set, 1), (Row{100, 101, 104}));
  EXPECT_EQ(Xs(set, 2), (Row{0, 1, 2, 3, 4}));
  EXPECT_EQ(ctd_contour_closed(set.get(), 0), 0);
  EXPECT_EQ(ctd_contour_closed(set.get(), 1), 1);
  EXPECT_EQ(Fields(set).contours[0].start, 0);
  EXPECT_EQ(Fields(set).contours[1].start, 2);
  EXPECT_EQ(Fields(set).contours[2].start, 5);
  EXPECT_EQ(ctd_point_count(set.get()), 10);
}

TEST(Resampling, OtherFieldsStay) {
  const ContourHandle set = MakeSet({AlongX({0, 1, 2, 3, 4})});
  CCrawler& fields = Fields(set);
  fields.edge_threshold = 11;
  fields.min_size = 3;
  fields.max_size = 99;
  fields.step = 0.5;
  fields.min_dist = 0.25;
  ctd_resample(set.get());
  EXPECT_EQ(fields.edge_threshold, 11);
  EXPECT_EQ(fields.min_size, 3);
  EXPECT_EQ(fields.max_size, 99);
  EXPECT_EQ(fields.step, 0.5);
  EXPECT_EQ(fields.min_dist, 0.25);
  EXPECT_EQ(fields.contour_count, 1);
  EXPECT_EQ(fields.contour_capacity, 1);
}

}  // namespace
}  // namespace orvandel::test
