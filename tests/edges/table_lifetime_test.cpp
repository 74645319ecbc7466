#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "edges/gradient_tables.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/reference/sub_canny.h"
#include "tests/support/image_patterns.h"

namespace orvandel::test {
namespace {

int CodeOfStraightUp() {
  return AcquireGradientTables()->direction[(1 + 127) * 256 + (0 + 127)];
}

TEST(TableLifetime, ASecondBuildTouchesNothing) {
  InitalizeSubCannyTable();
  const GradientTables* const tables = AcquireGradientTables();
  ASSERT_NE(tables, nullptr);
  const auto* const direction = tables->direction.get();
  const auto* const magnitude = tables->magnitude.get();
  const auto* const signed_magnitude = tables->signed_magnitude.get();
  // An entry that no build writes keeps what is put there, unless the block is built anew.
  tables->direction[GradientTables::kDirectionBytes - 1] = 0xA5;

  InitalizeSubCannyTable();

  EXPECT_EQ(AcquireGradientTables(), tables);
  EXPECT_EQ(tables->direction.get(), direction);
  EXPECT_EQ(tables->magnitude.get(), magnitude);
  EXPECT_EQ(tables->signed_magnitude.get(), signed_magnitude);
  EXPECT_EQ(tables->direction[GradientTables::kDirectionBytes - 1], 0xA5);
}

TEST(TableLifetime, DeletingTwiceAndRebuildingGivesTheSameTables) {
  InitalizeSubCannyTable();
  DeleteSubCannyTable();
  DeleteSubCannyTable();
  InitalizeSubCannyTable();
  ASSERT_NE(AcquireGradientTables(), nullptr);
  EXPECT_EQ(CodeOfStraightUp(), 64);
  EXPECT_EQ(AcquireGradientTables()->magnitude[255 * 256 + 255], 252);
  EXPECT_EQ(AcquireGradientTables()->SignedMagnitude(-255, 255), 252);
}

TEST(TableLifetime, DeletingBeforeAnyBuildIsHarmless) {
  DeleteSubCannyTable();  // Each test runs in a process of its own; repeated runs start deleted too.
  DeleteSubCannyTable();
  EXPECT_EQ(CodeOfStraightUp(), 64);
  DeleteSubCannyTable();
}

TEST(TableLifetime, DeletingLeavesTheSectorTable) {
  InitalizeSubCannyTable();
  DeleteSubCannyTable();
  EXPECT_EQ(SectorTable()[45], 1);
  EXPECT_EQ(SectorTable()[90], 2);
  EXPECT_EQ(SectorTable()[135], 3);
}

TEST(TableLifetime, DetectionBuildsTheTablesAgainByItself) {
  DeleteSubCannyTable();
  const Grid step = Painted(12, 9, [](int x, int) { return x < 6 ? 0 : 99; });
  const ImagePtr image = ImageOf(step);
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(12, 9), 0);
  SubCanny(image.get(), 10, &edges);
  EXPECT_EQ(GridOf(*image), ReferenceEdgeMap(12, 9, ReferenceSubCanny(step, 10)));
  EXPECT_EQ(edges.count, 2 * 5);  // two columns beside the step, rows 2 to 6
}

TEST(TableLifetime, TheFirstUseMayBeRacedBySeveralThreads) {
  constexpr unsigned kSeed = 11;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const Grid scene = Blobs(60, 40, random);
  const Grid expected = ReferenceEdgeMap(60, 40, ReferenceSubCanny(scene, 8));

  for (int round = 0; round < 20; ++round) {
    DeleteSubCannyTable();
    constexpr int kThreads = 4;
    std::atomic<int> waiting{kThreads};
    std::vector<Grid> maps(kThreads);
    std::vector<std::thread> threads;
    for (Grid& map : maps) {
      threads.emplace_back([&] {
        const ImagePtr image = ImageOf(scene);
        CEdgeImgComplement edges;
        edges.SetSize(60, 40);
        --waiting;
        while (waiting > 0)
          std::this_thread::yield();
        SubCanny(image.get(), 8, &edges);
        map = GridOf(*image);
      });
    }
    for (std::thread& thread : threads)
      thread.join();
    for (const Grid& map : maps)
      ASSERT_EQ(map, expected) << "round " << round;
  }
}

}  // namespace
}  // namespace orvandel::test
