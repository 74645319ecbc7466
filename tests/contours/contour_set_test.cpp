#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "orvandel/classic/crawler.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

/// Contours of 2, 3 and 1 points, numbered through in x.
ContourHandle NumberedSet() {
  return MakeSet({{{{0, 10, 0.5, 0}, {1, 11, 0.25, 4}}, false},
                  {{{2, 12, 1.5, 0}, {3, 13, 1.25, 0}, {4, 14, 2.5, 0}}, true},
                  {{{5, 15, -1, 0}}, false}});
}

TEST(ClassicContourSet, StartsEmptyWithItsDefaults) {
  const ContourHandle set = MakeEmptySet();
  ASSERT_NE(set, nullptr);
  EXPECT_EQ(ctd_contour_count(set.get()), 0);
  EXPECT_EQ(ctd_point_count(set.get()), 0);
  EXPECT_EQ(ctd_active_point_count(set.get()), 0);
  EXPECT_EQ(ctd_min_size(set.get()), 30);
  EXPECT_EQ(ctd_edgeIm(set.get()), nullptr);
  const CCrawler& fields = Fields(set);
  EXPECT_EQ(fields.x, nullptr);
  EXPECT_EQ(fields.y, nullptr);
  EXPECT_EQ(fields.g, nullptr);
  EXPECT_EQ(fields.f, nullptr);
  EXPECT_EQ(fields.contours, nullptr);
  EXPECT_EQ(fields.edge_threshold, 0);
  EXPECT_EQ(fields.point_capacity, 0);
  EXPECT_EQ(fields.contour_capacity, 0);
  EXPECT_EQ(fields.step, 1.0);
  EXPECT_EQ(fields.max_size, 10000);
  EXPECT_EQ(fields.min_dist, 0.6);
}

TEST(ClassicContourSet, DeletingNullDoesNothing) {
  ctd_delete(nullptr);
  const ContourHandle set = NumberedSet();  // and other sets are not touched
  ctd_delete(nullptr);
  EXPECT_EQ(ctd_point_count(set.get()), 6);
}

TEST(ClassicContourSet, HasOnlyAVirtualDestructor) {
  EXPECT_TRUE(std::has_virtual_destructor_v<CCrawler>);
  EXPECT_FALSE(std::is_copy_constructible_v<CCrawler>);
  EXPECT_TRUE(std::has_virtual_destructor_v<CEdgeImgComplement>);
}

TEST(ClassicContourSet, AccessorsReadContoursAndTheirPoints) {
  const ContourHandle set = NumberedSet();
  EXPECT_EQ(ctd_contour_count(set.get()), 3);
  EXPECT_EQ(ctd_point_count(set.get()), 6);
  EXPECT_EQ(ctd_contour_size(set.get(), 0), 2);
  EXPECT_EQ(ctd_contour_size(set.get(), 1), 3);
  EXPECT_EQ(ctd_contour_closed(set.get(), 0), 0);
  EXPECT_EQ(ctd_contour_closed(set.get(), 1), 1);
  EXPECT_EQ(ctd_contour_x(set.get(), 1, 2), 4.0);
  EXPECT_EQ(ctd_contour_y(set.get(), 1, 0), 12.0);
  EXPECT_EQ(ctd_contour_g(set.get(), 2, 0), -1.0);
  EXPECT_EQ(ctd_contour_f(set.get(), 0, 1), 4u);
}

TEST(ClassicContourSet, ArraysAreTheContoursOwnAndWritable) {
  const ContourHandle set = NumberedSet();
  EXPECT_EQ(ctd_contour_xa(set.get(), 1), Fields(set).x + 2);
  EXPECT_EQ(ctd_contour_ya(set.get(), 1), Fields(set).y + 2);
  EXPECT_EQ(ctd_contour_ga(set.get(), 1), Fields(set).g + 2);
  EXPECT_EQ(static_cast<void*>(ctd_contour_fa(set.get(), 1)), Fields(set).f + 2);
  ctd_contour_xa(set.get(), 1)[0] = 70;
  ctd_contour_ya(set.get(), 1)[1] = 71;
  ctd_contour_ga(set.get(), 1)[2] = 72;
  ctd_contour_fa(set.get(), 1)[2] = -1;
  EXPECT_EQ(ctd_contour_x(set.get(), 1, 0), 70.0);
  EXPECT_EQ(ctd_contour_y(set.get(), 1, 1), 71.0);
  EXPECT_EQ(ctd_contour_g(set.get(), 1, 2), 72.0);
  EXPECT_EQ(ctd_contour_f(set.get(), 1, 2), 0xFFFFFFFFu);
}

TEST(ClassicContourSet, AFlaggedPointIsNotActive) {
  const ContourHandle set = NumberedSet();
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 0), 1);  // one comes with flag 4
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 1), 3);
  EXPECT_EQ(ctd_active_point_count(set.get()), 5);
  ctd_set_contour_f(set.get(), 1, 1, 1);
  EXPECT_EQ(ctd_contour_f(set.get(), 1, 1), 1u);
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 1), 2);
  EXPECT_EQ(ctd_active_point_count(set.get()), 4);
  ctd_set_contour_f(set.get(), 1, 1, 0x80000000u);
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 1), 2);
  ctd_set_contour_f(set.get(), 1, 1, 0);
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 1), 3);
  EXPECT_EQ(ctd_active_point_count(set.get()), 5);
}

TEST(ClassicContourSet, AContourOfNoPointsHasNoActiveOnes) {
  const ContourHandle set = MakeSet({TestContour{}, {{{1, 1, 0, 0}}, false}});
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 0), 0);
  EXPECT_EQ(ctd_active_point_count(set.get()), 1);
  Fields(set).contours[0].size = -3;
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 0), 0);
}

TEST(ClassicContourSet, AfterSortingAccessorsGoThroughTheRecords) {
  const ContourHandle set = NumberedSet();
  ctd_sort(set.get(), 1);
  EXPECT_EQ(ctd_contour_xa(set.get(), 0), Fields(set).x + 2);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 0), 2.0);
  EXPECT_EQ(ctd_contour_x(set.get(), 1, 1), 1.0);
  EXPECT_EQ(ctd_contour_g(set.get(), 2, 0), -1.0);
  ctd_set_contour_f(set.get(), 2, 0, 6);
  EXPECT_EQ(Fields(set).f[5], 6u);
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 2), 0);
  EXPECT_EQ(ctd_active_point_count(set.get()), 4);
}

TEST(ClassicContourSet, TheSmallestSizeIsASetting) {
  const ContourHandle set = MakeEmptySet();
  ctd_set_min_size(set.get(), 12);
  EXPECT_EQ(ctd_min_size(set.get()), 12);
  EXPECT_EQ(Fields(set).min_size, 12);
}

TEST(ContourRecord, LiesInMemoryAsInFiles) {
  ContourRecord record{1, 2, 3};
  const auto* words = reinterpret_cast<const std::int32_t*>(&record);
  EXPECT_EQ(sizeof record, 12u);
  EXPECT_EQ(words[0], 1);
  EXPECT_EQ(words[1], 2);
  EXPECT_EQ(words[2], 3);
}

}  // namespace
}  // namespace orvandel::test
