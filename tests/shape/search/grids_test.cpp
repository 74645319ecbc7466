#include "shape/search/grids.h"

#include <utility>

#include <gtest/gtest.h>

namespace orvandel::shape {
namespace {

TEST(Grids, CoverTheRangeOfScalesWithoutGapsCoarsestFirst) {
  std::vector<Grid> grids;
  for (const double side : {8.0, 24.0, 100.0, 164.0, 1000.0}) {
    for (const auto& [low, high] :
         {std::pair{0.5, 2.0}, {0.25, 4.0}, {1.0, 1.0}, {0.95, 1.05}, {0.01, 0.02}}) {
      ChooseGrids(side, low, high, grids);
      ASSERT_FALSE(grids.empty());
      EXPECT_EQ(grids.front().max_scale, high);
      EXPECT_EQ(grids.back().min_scale, low);
      for (std::size_t i = 1; i < grids.size(); ++i) {
        EXPECT_EQ(grids[i].max_scale, grids[i - 1].min_scale);
        EXPECT_EQ(grids[i].level, grids[i - 1].level - 1);
      }
      EXPECT_GE(grids.back().level, 0);
    }
  }
}

TEST(Grids, ShowThePatternSmallEnoughForTryingEverything) {
  std::vector<Grid> grids;
  ChooseGrids(164.0, 0.5, 2.0, grids);
  for (const Grid& grid : grids) {
    const double pixels = static_cast<double>(1 << grid.level);
    EXPECT_LT(164.0 * grid.max_scale / pixels, 32.0);
    EXPECT_GT(164.0 * grid.min_scale / pixels, 8.0);
  }
}

}  // namespace
}  // namespace orvandel::shape
