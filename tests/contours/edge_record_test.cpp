#include "orvandel/classic/edge_record.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

int NumValid(const CEdgeImgComplement& record) {
  int valid = 0;
  for (int cell = 0; cell < record.map_size; ++cell)
    valid += record.valid[cell];
  return valid;
}

void ExpectEmpty(const CEdgeImgComplement& record) {
  EXPECT_EQ(record.x, nullptr);
  EXPECT_EQ(record.y, nullptr);
  EXPECT_EQ(record.g, nullptr);
  EXPECT_EQ(record.valid, nullptr);
  EXPECT_EQ(record.width, 0);
  EXPECT_EQ(record.height, 0);
  EXPECT_EQ(record.map_size, 0);
}

TEST(EdgeRecord, StartsEmpty) {
  const CEdgeImgComplement record;
  ExpectEmpty(record);
  EXPECT_EQ(record.count, 0);
}

TEST(EdgeRecord, ANewSizeHasNothingStored) {
  CEdgeImgComplement record;
  EXPECT_EQ(record.SetSize(5, 3), 0);
  EXPECT_EQ(record.width, 5);
  EXPECT_EQ(record.height, 3);
  EXPECT_EQ(record.map_size, 15);
  EXPECT_EQ(NumValid(record), 0);
}

TEST(EdgeRecord, TheSameSizeKeepsArraysAndContents) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.Store(2.5, 1.25, 0.5);
  const double* const x = record.x;
  EXPECT_EQ(record.SetSize(5, 3), 0);
  EXPECT_EQ(record.x, x);
  EXPECT_EQ(NumValid(record), 1);
  EXPECT_EQ(record.x[7], 2.5);
  EXPECT_EQ(record.count, 1);
}

TEST(EdgeRecord, AnotherSizeClearsButGoesOnCounting) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.Store(2.5, 1.25, 0.5);
  EXPECT_EQ(record.SetSize(3, 5), 0);  // as many cells, another shape
  EXPECT_EQ(record.width, 3);
  EXPECT_EQ(record.height, 5);
  EXPECT_EQ(NumValid(record), 0);
  EXPECT_EQ(record.count, 1);
  record.Store(0, 0, 0);
  EXPECT_EQ(record.count, 2);
}

TEST(EdgeRecord, AnImpossibleSizeFailsAndLeavesItEmpty) {
  constexpr int kLargest = std::numeric_limits<int>::max();
  const struct {
    int width, height;
  } kSizes[] = {{kLargest, kLargest}, {-1, 5}, {5, -1}, {-4, -4}, {kLargest, 2}, {65536, 65536}};
  for (const auto& size : kSizes) {
    CEdgeImgComplement record;
    ASSERT_EQ(record.SetSize(5, 3), 0);
    EXPECT_EQ(record.SetSize(size.width, size.height), 1) << size.width << 'x' << size.height;
    ExpectEmpty(record);
    record.Store(0.5, 0.5, 1);  // nowhere to go
    EXPECT_EQ(record.SetSize(5, 3), 0);
    EXPECT_EQ(NumValid(record), 0);
  }
}

TEST(EdgeRecord, StoresInTheCellThatHoldsThePosition) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.Store(4.99, 2.5, -1.25);
  const int cell = 2 * 5 + 4;
  EXPECT_EQ(record.x[cell], 4.99);
  EXPECT_EQ(record.y[cell], 2.5);
  EXPECT_EQ(record.g[cell], -1.25);
  EXPECT_EQ(record.valid[cell], 1);
  EXPECT_EQ(NumValid(record), 1);
  EXPECT_EQ(record.count, 1);
}

TEST(EdgeRecord, ALaterPointReplacesAnEarlierOneInItsCell) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.Store(1.25, 1.25, 1);
  record.Store(1.75, 1.5, 2);
  EXPECT_EQ(record.x[6], 1.75);
  EXPECT_EQ(record.y[6], 1.5);
  EXPECT_EQ(record.g[6], 2.0);
  EXPECT_EQ(NumValid(record), 1);
  EXPECT_EQ(record.count, 2);
}

TEST(EdgeRecord, PositionsJustBelowZeroTruncateIntoTheFirstRowAndColumn) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.Store(-0.75, -0.25, 1);
  EXPECT_EQ(record.valid[0], 1);
  EXPECT_EQ(record.x[0], -0.75);
  EXPECT_EQ(record.y[0], -0.25);
}

TEST(EdgeRecord, OutsideTheGridNothingIsStored) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  const double nan = std::nan("");
  const double inf = std::numeric_limits<double>::infinity();
  const struct {
    double x, y;
  } kOutside[] = {{5, 0},    {5, 1},     {-1, 1},     {-1, 0},          {0, 3},
                  {0, -1},   {4, 3},     {nan, 1},    {1, nan},         {inf, 1},
                  {1, -inf}, {1e300, 1}, {1, -1e300}, {4294967296.0, 1}};
  for (const auto& p : kOutside) {
    record.Store(p.x, p.y, 1);
    EXPECT_EQ(NumValid(record), 0) << p.x << ' ' << p.y;
  }
}

TEST(EdgeRecord, CountWrapsAround) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.count = std::numeric_limits<std::int32_t>::max();
  record.Store(1, 1, 1);
  EXPECT_EQ(record.count, std::numeric_limits<std::int32_t>::min());
}

TEST(EdgeRecord, RefillsFromTheContoursOfASet) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.Store(0.5, 0.5, 9);
  const ContourHandle set = MakeSet({{{{1.5, 0.5, 1}, {2.5, 1.5, 2}}, false},
                                     {{{2.75, 1.25, 3}, {4.5, 2.5, 4}, {9.5, 0.5, 5}}, true}});
  EXPECT_EQ(record.Refill(set.get()), 2);
  EXPECT_EQ(NumValid(record), 3);  // the first point is gone, one lies outside, two share a cell
  EXPECT_EQ(record.valid[0], 0);
  EXPECT_EQ(record.g[1], 1.0);
  EXPECT_EQ(record.g[5 + 2], 3.0);  // the later of the two
  EXPECT_EQ(record.x[5 + 2], 2.75);
  EXPECT_EQ(record.g[2 * 5 + 4], 4.0);
}

TEST(EdgeRecord, RefillGoesThroughTheRecordsInTheirOrder) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  const ContourHandle set =
      MakeSet({{{{1.5, 1.5, 1}}, false}, {{{1.25, 1.25, 2}, {3.5, 1.5, 3}}, false}});
  ctd_sort(set.get(), 1);
  EXPECT_EQ(record.Refill(set.get()), 2);
  EXPECT_EQ(record.g[6], 1.0);  // the shorter contour now comes last
}

TEST(EdgeRecord, RefillCountsEveryStore) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  const ContourHandle set = MakeSet({{{{1.5, 0.5, 1}, {2.5, 1.5, 2}}, false}});
  record.Refill(set.get());
  record.Refill(set.get());
  EXPECT_EQ(record.count, 4);
  EXPECT_EQ(NumValid(record), 2);
}

TEST(EdgeRecord, RefillFromAnEmptySetClears) {
  CEdgeImgComplement record;
  record.SetSize(5, 3);
  record.Store(0.5, 0.5, 9);
  EXPECT_EQ(record.Refill(MakeEmptySet().get()), 0);
  EXPECT_EQ(NumValid(record), 0);
}

}  // namespace
}  // namespace orvandel::test
