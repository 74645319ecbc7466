#include "shape/model/point_choice.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/search/counted_allocations.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

double Distance(const EdgePoint& a, const EdgePoint& b) {
  return std::hypot(a.at.x - b.at.x, a.at.y - b.at.y);
}

/// Points around a circle, evenly, of different strengths.
std::vector<EdgePoint> Circle(std::size_t count, double radius) {
  test::UniformRandom random(3);
  std::vector<EdgePoint> points;
  for (std::size_t i = 0; i < count; ++i) {
    const double angle = 6.283185307 * static_cast<double>(i) / static_cast<double>(count);
    points.push_back({{radius * std::cos(angle), radius * std::sin(angle)},
                      {std::cos(angle), std::sin(angle)},
                      random.Real(50, 100)});
  }
  return points;
}

TEST(ChoosePoints, GivesAsManyAsAreWantedOrThereAre) {
  for (const std::size_t count : {1U, 7U, 47U, 48U, 49U, 500U})
    EXPECT_EQ(ChoosePoints(Circle(count, 60), 48).size(), std::min<std::size_t>(count, 48));
}

TEST(ChoosePoints, SpreadsThem) {
  const std::vector<EdgePoint> chosen = ChoosePoints(Circle(500, 60), 48);
  // Spread evenly they would lie 7.8 pixels apart; taking strong ones first leaves gaps that none fits into, of less than
  // twice the distance.
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k)
      EXPECT_GT(Distance(chosen[i], chosen[k]), 7.8 / 2);
  }
}

TEST(ChoosePoints, LeavesTheWeakerOfTwoThatLieOnEachOtherOut) {
  std::vector<EdgePoint> points = Circle(48, 60);
  points.push_back(points.front());
  points.back().strength = 10;
  const std::vector<EdgePoint> chosen = ChoosePoints(points, 48);
  ASSERT_EQ(chosen.size(), 48U);
  for (const EdgePoint& point : chosen)
    EXPECT_GE(point.strength, 50);
}

TEST(ChoosePoints, NeedsLittleMemoryWhereNoDistanceLeavesAsManyAsAreWanted) {
  // Two points lie on a third one: apart there are 48, however small the distance.
  std::vector<EdgePoint> points = Circle(48, 60);
  points.push_back(points.front());
  points.push_back(points.front());
  test::TakeLargestAllocation();
  EXPECT_EQ(ChoosePoints(points, 49).size(), 49U);
  EXPECT_LT(test::TakeLargestAllocation(), 1000000U);
}

}  // namespace
}  // namespace orvandel::shape
