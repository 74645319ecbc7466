#include <algorithm>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"
#include "tests/support/image_patterns.h"

namespace orvandel::test {
namespace {

/// A set of contours of the given sizes; contour i has its points at x = i.
ContourHandle SetOfSizes(const std::vector<int>& sizes) {
  std::vector<TestContour> contours;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    TestContour contour;
    contour.closed = i % 2 == 1;
    contour.points.resize(static_cast<std::size_t>(sizes[i]), {double(i), 0, 0, 0});
    contours.push_back(contour);
  }
  return MakeSet(contours);
}

using SizeAndNumber = std::pair<int, int>;

/// (size, number at creation) of every contour in record order.
std::vector<SizeAndNumber> Order(const ContourHandle& set) {
  std::vector<SizeAndNumber> order;
  for (int i = 0; i < ctd_contour_count(set.get()); ++i)
    order.emplace_back(ctd_contour_size(set.get(), i),
                       static_cast<int>(ctd_contour_x(set.get(), i, 0)));
  return order;
}

TEST(Sorting, DescendingPutsTheLongestFirst) {
  const ContourHandle set = SetOfSizes({3, 9, 1, 5});
  EXPECT_EQ(ctd_sort(set.get(), 1), 0);
  EXPECT_EQ(Order(set), (std::vector<SizeAndNumber>{{9, 1}, {5, 3}, {3, 0}, {1, 2}}));
}

TEST(Sorting, ZeroPutsTheShortestFirst) {
  const ContourHandle set = SetOfSizes({3, 9, 1, 5});
  EXPECT_EQ(ctd_sort(set.get(), 0), 0);
  EXPECT_EQ(Order(set), (std::vector<SizeAndNumber>{{1, 2}, {3, 0}, {5, 3}, {9, 1}}));
}

TEST(Sorting, AnyOtherNumberMeansDescending) {
  for (const int descending : {2, -1, 1000}) {
    const ContourHandle set = SetOfSizes({3, 9, 1, 5});
    ctd_sort(set.get(), descending);
    EXPECT_EQ(Order(set).front(), SizeAndNumber(9, 1)) << descending;
  }
}

TEST(Sorting, EqualSizesKeepTheirOrderBothWays) {
  const ContourHandle down = SetOfSizes({4, 7, 4, 7, 4, 2});
  ctd_sort(down.get(), 1);
  EXPECT_EQ(Order(down),
            (std::vector<SizeAndNumber>{{7, 1}, {7, 3}, {4, 0}, {4, 2}, {4, 4}, {2, 5}}));
  const ContourHandle up = SetOfSizes({4, 7, 4, 7, 4, 2});
  ctd_sort(up.get(), 0);
  EXPECT_EQ(Order(up),
            (std::vector<SizeAndNumber>{{2, 5}, {4, 0}, {4, 2}, {4, 4}, {7, 1}, {7, 3}}));
}

TEST(Sorting, ManyEqualSizesKeepTheirOrder) {
  constexpr unsigned kSeed = 81;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  std::vector<int> sizes;
  for (int i = 0; i < 500; ++i)
    sizes.push_back(1 + Below(random, 6));
  for (const int descending : {0, 1}) {
    const ContourHandle set = SetOfSizes(sizes);
    ctd_sort(set.get(), descending);
    // Every size, in its direction, with the numbers that have it in ascending order.
    std::vector<SizeAndNumber> expected;
    for (int s = 1; s <= 6; ++s) {
      const int size = descending ? 7 - s : s;
      for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (sizes[i] == size) expected.emplace_back(size, static_cast<int>(i));
      }
    }
    EXPECT_EQ(Order(set), expected);
  }
}

TEST(Sorting, RecordsMoveWholeAndPointsStay) {
  const ContourHandle set = SetOfSizes({3, 9, 1, 5});
  const double* const x = Fields(set).x;
  const std::vector<double> before(x, x + 18);
  ctd_sort(set.get(), 1);
  EXPECT_EQ(Fields(set).x, x);
  EXPECT_EQ(std::vector<double>(x, x + 18), before);
  EXPECT_EQ(Fields(set).contours[0].start, 3);
  EXPECT_EQ(Fields(set).contours[1].start, 13);
  EXPECT_EQ(Fields(set).contours[2].start, 0);
  EXPECT_EQ(Fields(set).contours[3].start, 12);
  EXPECT_EQ(ctd_contour_closed(set.get(), 0), 1);
  EXPECT_EQ(ctd_contour_closed(set.get(), 2), 0);
}

TEST(Sorting, NoneOrOneContourIsFine) {
  const ContourHandle none = MakeEmptySet();
  EXPECT_EQ(ctd_sort(none.get(), 1), 0);
  const ContourHandle one = SetOfSizes({3});
  EXPECT_EQ(ctd_sort(one.get(), 0), 0);
  EXPECT_EQ(Order(one), (std::vector<SizeAndNumber>{{3, 0}}));
}

}  // namespace
}  // namespace orvandel::test
