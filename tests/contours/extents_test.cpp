#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

/// Two contours whose extremes are met twice each; the partner coordinates tell which was taken.
ContourHandle SetWithTies() {
  return MakeSet({{{{2, 5}, {9, 1}, {9, 2}, {-3, 4}}, false},
                  {{{-3, 7}, {4, 12}, {5, 12}, {6, -8}, {7, -8}}, true}});
}

TEST(Centroid, IsTheMeanOfAllPoints) {
  const ContourHandle set = SetWithTies();
  ctd_set_contour_f(set.get(), 0, 0, 1);  // flags do not matter
  double cx = 0, cy = 0;
  EXPECT_EQ(ctd_centroid(set.get(), &cx, &cy), 0);
  EXPECT_EQ(cx, 36.0 / 9);
  EXPECT_EQ(cy, 27.0 / 9);
}

TEST(Centroid, SumsInIndexOrderWhateverTheRecordOrder) {
  // In index order 1e16 swallows the ones that follow; the other way round they would add up first.
  const ContourHandle set =
      MakeSet({{{{1e16, 1e16}}, false}, {{{1, 1}, {1, 1}, {1, 1}, {1, 1}}, false}});
  ctd_sort(set.get(), 1);
  double cx = 0, cy = 0;
  ctd_centroid(set.get(), &cx, &cy);
  EXPECT_EQ(cx, 1e16 / 5);
  EXPECT_EQ(cy, 1e16 / 5);
}

TEST(Centroid, OfNoPointsIsNotANumber) {
  const ContourHandle set = MakeEmptySet();
  double cx = 0, cy = 0;
  EXPECT_EQ(ctd_centroid(set.get(), &cx, &cy), 0);
  EXPECT_TRUE(std::isnan(cx));
  EXPECT_TRUE(std::isnan(cy));
}

TEST(Extents, TheFirstPointWinsATieAndGivesThePartnerCoordinate) {
  const ContourHandle set = SetWithTies();
  double other = 0;
  EXPECT_EQ(ctd_maxx(set.get(), &other), 9.0);
  EXPECT_EQ(other, 1.0);
  EXPECT_EQ(ctd_minx(set.get(), &other), -3.0);
  EXPECT_EQ(other, 4.0);
  EXPECT_EQ(ctd_maxy(set.get(), &other), 12.0);
  EXPECT_EQ(other, 4.0);
  EXPECT_EQ(ctd_miny(set.get(), &other), -8.0);
  EXPECT_EQ(other, 6.0);
}

TEST(Extents, ThePartnerMayBeLeftOut) {
  const ContourHandle set = SetWithTies();
  EXPECT_EQ(ctd_maxx(set.get(), nullptr), 9.0);
  EXPECT_EQ(ctd_minx(set.get(), nullptr), -3.0);
  EXPECT_EQ(ctd_maxy(set.get(), nullptr), 12.0);
  EXPECT_EQ(ctd_miny(set.get(), nullptr), -8.0);
}

TEST(Extents, TheBoxHasAllFourInOrder) {
  const ContourHandle set = SetWithTies();
  double min_x = 0, min_y = 0, max_x = 0, max_y = 0;
  ctd_bbox(set.get(), &min_x, &min_y, &max_x, &max_y);
  EXPECT_EQ(min_x, -3.0);
  EXPECT_EQ(min_y, -8.0);
  EXPECT_EQ(max_x, 9.0);
  EXPECT_EQ(max_y, 12.0);
}

TEST(Extents, WithoutPointsAreTheStartValuesAndNoPartner) {
  const ContourHandle set = MakeEmptySet();
  double other = 42;
  EXPECT_EQ(ctd_maxx(set.get(), &other), -999999999.0);
  EXPECT_EQ(ctd_minx(set.get(), &other), 999999999.0);
  EXPECT_EQ(ctd_maxy(set.get(), &other), -999999999.0);
  EXPECT_EQ(ctd_miny(set.get(), &other), 999999999.0);
  EXPECT_EQ(other, 42.0);
  double min_x = 0, min_y = 0, max_x = 0, max_y = 0;
  ctd_bbox(set.get(), &min_x, &min_y, &max_x, &max_y);
  EXPECT_EQ(min_x, 999999999.0);
  EXPECT_EQ(min_y, 999999999.0);
  EXPECT_EQ(max_x, -999999999.0);
  EXPECT_EQ(max_y, -999999999.0);
}

TEST(Extents, PointsBeyondOrAtTheStartValuesReplaceNothing) {
  // All points at or beyond the start values of the minima; not numbers compare false.
  const ContourHandle set = MakeSet({{{{2e9, 999999999.0}, {std::nan(""), std::nan("")}}, false}});
  double other = 42;
  EXPECT_EQ(ctd_minx(set.get(), &other), 999999999.0);
  EXPECT_EQ(ctd_miny(set.get(), &other), 999999999.0);
  EXPECT_EQ(other, 42.0);
  EXPECT_EQ(ctd_maxx(set.get(), &other), 2e9);
  EXPECT_EQ(other, 999999999.0);
  EXPECT_EQ(ctd_maxy(set.get(), nullptr), 999999999.0);
}

TEST(Extents, AreOverThePointArraysNotOverTheRecords) {
  const ContourHandle set = SetWithTies();
  Fields(set).contour_count = 1;  // the points of the second contour are still there
  EXPECT_EQ(ctd_maxy(set.get(), nullptr), 12.0);
}

}  // namespace
}  // namespace orvandel::test
