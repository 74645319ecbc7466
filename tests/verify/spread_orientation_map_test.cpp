// Where a probe may meet an edge: looked up in the map, and by probing.

#include "verify/spread_orientation_map.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/numbers.h"
#include "tests/support/uniform_random.h"
#include "tests/verify/scene_edges.h"
#include "verify/edge_probe.h"

namespace orvandel::test {
namespace {

SpreadOrientationMap MapOf(const SceneEdges& scene, const MatchOptions& options = {}) {
  SpreadOrientationMap map((*scene).width, (*scene).height, options);
  map.Fill(*scene);
  return map;
}

/// Whether the map leaves it open that a point with that expected direction has credit at a pixel.
bool IsOpen(const SpreadOrientationMap& map, int column, int row, double expected) {
  const OrientationMask bins = ExpectedBins(Quantised(expected), 0);
  return (map.Masks()[map.IndexOf(column, row)] & bins) != 0;
}

TEST(SpreadOrientationMap, WhereThereIsCreditItIsOpen) {
  int num_credits = 0;
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    MatchOptions options;
    if (seed > 20) {
      options.radius = random.Integer(0, 9);
      options.ignore_polarity = random.OneIn(2);
      options.angle_tolerance = random.Real(0, 2);
    }
    SceneEdges scene(random.Integer(30, 61), random.Integer(30, 61));
    for (int i = random.Integer(1, 60); i > 0; --i) {
      scene.Put(random.Integer(0, (*scene).width - 1), random.Integer(0, (*scene).height - 1),
                random.OneIn(10) ? 9.0 : random.Real(-kPi, kPi));
    }
    const SpreadOrientationMap map = MapOf(scene, options);
    const EdgeProbe probe(options, scene.get());
    for (int i = 0; i < 4000; ++i) {
      const PixelIndex centre = {random.Integer(0, (*scene).height - 1),
                                 random.Integer(0, (*scene).width - 1)};
      if (!probe.IsAdmissible(centre)) continue;
      const double expected =
          random.OneIn(6) ? random.Integer(0, 32) * (kPi / 16) : random.Real(0, 2 * kPi);
      std::int64_t num_probes = 0;
      const bool has_credit =
          probe.Matches(centre, expected) ||
          probe.CreditAlongNormal(centre, expected, NormalSteps(expected, options.radius),
                                  kNeighbourInSearch, num_probes) > 0;
      if (!has_credit) continue;
      ++num_credits;
      ASSERT_TRUE(IsOpen(map, centre.column, centre.row, expected))
          << centre.column << ' ' << centre.row << ' ' << expected;
    }
  }
  EXPECT_GT(num_credits, 5000);  // the scenes are not just empty
}

TEST(SpreadOrientationMap, NothingIsOpenFarFromEveryEdge) {
  SceneEdges scene(80, 60);
  scene.Put(10, 10, 0.0);
  const SpreadOrientationMap map = MapOf(scene);
  // Six pixels for the probes and their neighbours, and one for the squares of 2 x 2.
  for (int row = 0; row < 60; ++row) {
    for (int column = 0; column < 80; ++column) {
      if (std::abs(column - 10) <= 7 && std::abs(row - 10) <= 7) continue;
      for (double expected = 0.1; expected < 6; expected += 0.5)
        ASSERT_FALSE(IsOpen(map, column, row, expected)) << column << ' ' << row;
    }
  }
}

TEST(SpreadOrientationMap, AnEdgeIsMetAlongItsNormalOnly) {
  // Direction 0: the normal runs along the row, and a probe strays one row at most.
  SceneEdges scene(40, 40);
  scene.Put(20, 20, 0.0);
  const SpreadOrientationMap map = MapOf(scene);
  for (int column = 15; column <= 25; ++column)
    EXPECT_TRUE(IsOpen(map, column, 20, 0.01));
  for (const int row : {12, 14, 26, 28})
    EXPECT_FALSE(IsOpen(map, 20, row, 0.01)) << row;
}

TEST(SpreadOrientationMap, AnEdgeOfAnotherDirectionIsNotMet) {
  SceneEdges scene(40, 40);
  scene.Put(20, 20, 0.0);
  const SpreadOrientationMap map = MapOf(scene);
  EXPECT_FALSE(IsOpen(map, 20, 20, 1.0));
  EXPECT_FALSE(IsOpen(map, 20, 20, kPi));
}

TEST(SpreadOrientationMap, ARecordOfNegativeWidthLeavesItEmpty) {
  CEdgeImgComplement record;
  record.SetSize(20, 20);
  record.Store(10.5, 10.5, 0.0);
  record.width = -1;  // hosts reach the field
  SpreadOrientationMap map(20, 20, MatchOptions{});
  map.Fill(record);
  const std::span<const OrientationMask> masks(map.Masks(), map.EmptyIndex() + 1);
  EXPECT_EQ(std::count(masks.begin(), masks.end(), OrientationMask{0}), std::ssize(masks));
}

TEST(SpreadOrientationMap, TheEntryForPointsOutsideIsEmpty) {
  SceneEdges scene(33, 21);
  for (int column = 0; column < 33; ++column)
    scene.Put(column, 20, 0.5);
  const SpreadOrientationMap map = MapOf(scene);
  EXPECT_EQ(map.Masks()[map.EmptyIndex()], 0u);
}

}  // namespace
}  // namespace orvandel::test
