#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

ContourHandle Source() {
  ContourHandle set = MakeSet({{{{0, 10, 0.5, 0}, {1, 11, 0.25, 4}}, false},
                               {{{2, 12, 1.5, 0}, {3, 13, 1.25, 7}, {4, 14, 2.5, 0}}, true}});
  CCrawler& fields = Fields(set);
  fields.edge_threshold = 17;
  fields.point_capacity = 64;  // bookkeeping, larger than what is allocated
  fields.contour_capacity = 9;
  fields.step = 0.5;
  fields.min_size = 3;
  fields.max_size = 77;
  fields.min_dist = 0.125;
  fields.edgeIm = new CEdgeImgComplement;
  return set;
}

void ExpectSourcesContours(const ContourHandle& set) {
  ASSERT_EQ(ctd_contour_count(set.get()), 2);
  ASSERT_EQ(ctd_point_count(set.get()), 5);
  EXPECT_EQ(ctd_contour_size(set.get(), 0), 2);
  EXPECT_EQ(ctd_contour_size(set.get(), 1), 3);
  EXPECT_EQ(ctd_contour_closed(set.get(), 1), 1);
  EXPECT_EQ(ctd_contour_x(set.get(), 1, 2), 4.0);
  EXPECT_EQ(ctd_contour_y(set.get(), 0, 1), 11.0);
  EXPECT_EQ(ctd_contour_g(set.get(), 1, 1), 1.25);
  EXPECT_EQ(ctd_contour_f(set.get(), 1, 1), 7u);
  const CCrawler& fields = Fields(set);
  EXPECT_EQ(fields.edge_threshold, 17);
  EXPECT_EQ(fields.point_capacity, 64);
  EXPECT_EQ(fields.contour_capacity, 9);
  EXPECT_EQ(fields.step, 0.5);
  EXPECT_EQ(fields.min_size, 3);
  EXPECT_EQ(fields.max_size, 77);
}

TEST(ContourCopy, TheFirstArgumentIsCopiedIntoTheSecond) {
  const ContourHandle source = Source();
  const ContourHandle copy = MakeEmptySet();
  ctd_copy(source.get(), copy.get());
  ExpectSourcesContours(copy);
  ExpectSourcesContours(source);
}

TEST(ContourCopy, TheDestinationKeepsItsMinDistAndItsEdgeRecord) {
  const ContourHandle source = Source();
  const ContourHandle copy = MakeSet({{{{9, 9, 9, 9}}, false}});
  CEdgeImgComplement* const edges = new CEdgeImgComplement;
  Fields(copy).edgeIm = edges;
  Fields(copy).min_dist = 0.75;
  ctd_copy(source.get(), copy.get());
  ExpectSourcesContours(copy);
  EXPECT_EQ(Fields(copy).min_dist, 0.75);
  EXPECT_EQ(ctd_edgeIm(copy.get()), edges);
  EXPECT_EQ(Fields(source).min_dist, 0.125);
}

TEST(ContourCopy, ADestinationWithoutEdgeRecordHasNoneAfterwards) {
  const ContourHandle source = Source();
  const ContourHandle copy = MakeEmptySet();
  ctd_copy(source.get(), copy.get());
  EXPECT_EQ(ctd_edgeIm(copy.get()), nullptr);
  EXPECT_EQ(Fields(copy).min_dist, 0.6);
}

TEST(ContourCopy, HasArraysOfItsOwn) {
  const ContourHandle copy = MakeEmptySet();
  {
    const ContourHandle source = Source();
    ctd_copy(source.get(), copy.get());
    ctd_contour_xa(source.get(), 0)[0] = 99;
    ctd_set_contour_f(source.get(), 0, 0, 5);
    Fields(source).contours[0].size = 1;
  }
  EXPECT_EQ(ctd_contour_x(copy.get(), 0, 0), 0.0);
  ExpectSourcesContours(copy);
}

TEST(ContourCopy, KeepsTheRecordOrderOfASortedSet) {
  const ContourHandle source = Source();
  ctd_sort(source.get(), 1);
  const ContourHandle copy = MakeEmptySet();
  ctd_copy(source.get(), copy.get());
  EXPECT_EQ(Fields(copy).contours[0].start, 2);
  EXPECT_EQ(ctd_contour_x(copy.get(), 0, 0), 2.0);
  EXPECT_EQ(ctd_contour_x(copy.get(), 1, 0), 0.0);
}

TEST(ContourCopy, OfAnEmptySetEmptiesTheDestination) {
  const ContourHandle copy = Source();
  ctd_copy(MakeEmptySet().get(), copy.get());
  EXPECT_EQ(ctd_contour_count(copy.get()), 0);
  EXPECT_EQ(ctd_point_count(copy.get()), 0);
  EXPECT_EQ(ctd_active_point_count(copy.get()), 0);
  EXPECT_EQ(ctd_min_size(copy.get()), 30);
  EXPECT_EQ(Fields(copy).point_capacity, 0);
}

TEST(ContourCopy, OntoItselfChangesNothing) {
  const ContourHandle set = Source();
  const double* const x = Fields(set).x;
  ctd_copy(set.get(), set.get());
  EXPECT_EQ(Fields(set).x, x);
  ExpectSourcesContours(set);
}

TEST(ContourCopy, OverAndOver) {
  const ContourHandle source = Source();
  const ContourHandle copy = MakeEmptySet();
  for (int i = 0; i < 3; ++i) {
    ctd_copy(source.get(), copy.get());
    ctd_copy(copy.get(), source.get());
  }
  ExpectSourcesContours(copy);
  ExpectSourcesContours(source);
}

}  // namespace
}  // namespace orvandel::test
