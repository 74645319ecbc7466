#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "tests/support/contour_sets.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

// Files that are missing, short or damaged, and places where none can be written.
namespace orvandel::test {
namespace {

using I = std::int32_t;

/// Contours of 2, 3 and 1 points, threshold 23.
ContourHandle SetOfSixPoints() {
  ContourHandle set = MakeSet(
      {{{{0, 10}, {1, 11}}, false}, {{{2, 12}, {3, 13}, {4, 14}}, true}, {{{5, 15}}, false}});
  Fields(set).edge_threshold = 23;
  return set;
}

TEST(ContourFileFailures, AMissingFileGives9AndLeavesTheSet) {
  const ScratchFolder folder;
  const ContourHandle set = SetOfSixPoints();
  EXPECT_EQ(ctd_load(set.get(), folder.File("missing.ctd").c_str()), 9);
  EXPECT_EQ(ctd_contour_count(set.get()), 3);
  EXPECT_EQ(ctd_point_count(set.get()), 6);
  EXPECT_EQ(ctd_contour_x(set.get(), 1, 2), 4.0);
  EXPECT_EQ(Fields(set).edge_threshold, 23);
}

TEST(ContourFileFailures, SavingWhereNoFileCanBeGives9) {
  const ScratchFolder folder;
  const ContourHandle set = SetOfSixPoints();
  EXPECT_EQ(ctd_save(set.get(), folder.File("no/such/folder.ctd").c_str()), 9);
  EXPECT_EQ(ctd_save(set.get(), folder.Path().string().c_str()), 9);  // a folder
}

#if defined(__linux__)
TEST(ContourFileFailures, AFullDiskGives9) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
  EXPECT_EQ(ctd_save(SetOfSixPoints().get(), "/dev/full"), 9);
  TestContour large;
  large.points.resize(100000);
  EXPECT_EQ(ctd_save(MakeSet({large}).get(), "/dev/full"), 9);
}
#endif

TEST(ContourFileFailures, WhatAShortFileLacksIsZero) {
  const ScratchFolder folder;
  const std::string path = folder.File("short.ctd");
  // Two contours and five points are announced; the first record and two x follow.
  WriteBytes(path, Bytes(I{2}, I{5}, I{31}, I{0}, I{3}, I{1}));
  const ContourHandle set = SetOfSixPoints();
  EXPECT_EQ(ctd_load(set.get(), path.c_str()), 0);
  EXPECT_EQ(ctd_contour_count(set.get()), 2);
  EXPECT_EQ(ctd_point_count(set.get()), 5);
  EXPECT_EQ(Fields(set).edge_threshold, 31);
  EXPECT_EQ(ctd_contour_size(set.get(), 0), 3);
  EXPECT_EQ(ctd_contour_closed(set.get(), 0), 1);
  EXPECT_EQ(ctd_contour_size(set.get(), 1), 0);
  for (int k = 0; k < 5; ++k) {
    EXPECT_EQ(Fields(set).x[k], 0.0);
    EXPECT_EQ(Fields(set).y[k], 0.0);
    EXPECT_EQ(Fields(set).g[k], 0.0);
    EXPECT_EQ(Fields(set).f[k], 0u);
  }
}

TEST(ContourFileFailures, AFileThatEndsWithinTheCoordinatesKeepsThoseItHas) {
  const ScratchFolder folder;
  const std::string path = folder.File("short.ctd");
  WriteBytes(path, Bytes(I{1}, I{3}, I{31}, I{0}, I{3}, I{1}, 1.5, 2.5));
  const ContourHandle set = MakeEmptySet();
  EXPECT_EQ(ctd_load(set.get(), path.c_str()), 0);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 0), 1.5);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 1), 2.5);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 2), 0.0);
  EXPECT_EQ(ctd_contour_y(set.get(), 0, 0), 0.0);
}

TEST(ContourFileFailures, CountsThatAreMissingAreZero) {
  const ScratchFolder folder;
  const std::string path = folder.File("short.ctd");
  for (const std::string& bytes : {std::string(), Bytes(I{0}), Bytes(I{0}, I{0})}) {
    WriteBytes(path, bytes);
    const ContourHandle set = SetOfSixPoints();
    EXPECT_EQ(ctd_load(set.get(), path.c_str()), 0);
    EXPECT_EQ(ctd_contour_count(set.get()), 0) << bytes.size();
    EXPECT_EQ(ctd_point_count(set.get()), 0);
    EXPECT_EQ(Fields(set).edge_threshold, 0);
  }
}

TEST(ContourFileFailures, ANegativeCountGives4AndASetThatActsAsEmpty) {
  const ScratchFolder folder;
  const std::string path = folder.File("negative.ctd");
  const std::vector<std::pair<I, I>> counts = {{-1, 5}, {2, -5}, {-3, -3}};
  for (const auto& [contours, points] : counts) {
    std::string bytes = Bytes(contours, points, I{31});
    bytes.resize(bytes.size() + 500, '\1');
    WriteBytes(path, bytes);
    const ContourHandle set = SetOfSixPoints();
    EXPECT_EQ(ctd_load(set.get(), path.c_str()), 4);
    EXPECT_EQ(Fields(set).x, nullptr);
    EXPECT_EQ(Fields(set).f, nullptr);
    EXPECT_EQ(Fields(set).contours, nullptr);
    EXPECT_EQ(ctd_contour_count(set.get()), contours);  // counts as read
    EXPECT_EQ(ctd_point_count(set.get()), points);

    EXPECT_EQ(ctd_active_point_count(set.get()), 0);
    EXPECT_EQ(ctd_average(set.get()), 0);
    EXPECT_EQ(ctd_resample(set.get()), 0);
    EXPECT_EQ(ctd_sort(set.get(), 1), 0);
    double cx = 0, cy = 0;
    EXPECT_EQ(ctd_centroid(set.get(), &cx, &cy), 0);
    EXPECT_TRUE(std::isnan(cx));
    EXPECT_TRUE(std::isnan(cy));
    EXPECT_EQ(ctd_maxx(set.get(), nullptr), -999999999.0);
    EXPECT_EQ(ctd_miny(set.get(), nullptr), 999999999.0);
    CEdgeImgComplement record;
    ASSERT_EQ(record.SetSize(4, 4), 0);
    record.Refill(set.get());
    EXPECT_EQ(record.count, 0);

    const ContourHandle copy = SetOfSixPoints();
    ctd_copy(set.get(), copy.get());
    EXPECT_EQ(ctd_active_point_count(copy.get()), 0);
  }
}

TEST(ContourFileFailures, ASetIsUsableAgainAfterAFailedLoad) {
  const ScratchFolder folder;
  WriteBytes(folder.File("negative.ctd"), Bytes(I{-1}, I{5}, I{31}));
  ASSERT_EQ(ctd_save(SetOfSixPoints().get(), folder.File("set.ctd").c_str()), 0);
  const ContourHandle set = MakeEmptySet();
  EXPECT_EQ(ctd_load(set.get(), folder.File("negative.ctd").c_str()), 4);
  EXPECT_EQ(ctd_load(set.get(), folder.File("set.ctd").c_str()), 0);
  EXPECT_EQ(ctd_point_count(set.get()), 6);
}

}  // namespace
}  // namespace orvandel::test
