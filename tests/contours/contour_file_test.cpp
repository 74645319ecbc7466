#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "tests/support/contour_sets.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::test {
namespace {

using I = std::int32_t;

/// Sizes 2, 3 and 1; coordinates that need every bit.
ContourHandle SmallSet() {
  ContourHandle set =
      MakeSet({{{{0.1, 10.7, -0.5, 0}, {1 / 3.0, 11, 0.25, 4}}, false},
               {{{2, 12, 1.5, 1}, {3, 13, 1.25, 0}, {4, 14, 2.5, 0xFFFFFFFFu}}, true},
               {{{5e300, -15, -1e-300, 2}}, false}});
  Fields(set).edge_threshold = 23;
  return set;
}

TEST(ContourFile, OneContourOfThreePointsByteByByte) {
  const ScratchFolder folder;
  const ContourHandle set = MakeSet({{{{1, 2, 0.5, 0}, {1.5, -2, 0, 1}, {-2, 2.5, -1, 2}}, true}});
  Fields(set).edge_threshold = 20;
  EXPECT_EQ(ctd_save(set.get(), folder.File("one.ctd").c_str()), 0);

  const unsigned char kExpected[] = {
      1,  0, 0, 0,                                 // contours
      3,  0, 0, 0,                                 // points
      20, 0, 0, 0,                                 // edge threshold
      0,  0, 0, 0, 3, 0, 0,    0,    1, 0, 0, 0,   // start, size, closed
      0,  0, 0, 0, 0, 0, 0xF0, 0x3F,               // x: 1
      0,  0, 0, 0, 0, 0, 0xF8, 0x3F,               //    1.5
      0,  0, 0, 0, 0, 0, 0x00, 0xC0,               //    -2
      0,  0, 0, 0, 0, 0, 0x00, 0x40,               // y: 2
      0,  0, 0, 0, 0, 0, 0x00, 0xC0,               //    -2
      0,  0, 0, 0, 0, 0, 0x04, 0x40,               //    2.5
      0,  0, 0, 0, 0, 0, 0xE0, 0x3F,               // g: 0.5
      0,  0, 0, 0, 0, 0, 0x00, 0x00,               //    0
      0,  0, 0, 0, 0, 0, 0xF0, 0xBF,               //    -1
      0,  0, 0, 0, 1, 0, 0,    0,    2, 0, 0, 0};  // f
  static_assert(sizeof kExpected == 108);
  const std::string saved = Contents(folder.File("one.ctd"));
  EXPECT_EQ(saved, std::string(reinterpret_cast<const char*>(kExpected), sizeof kExpected));
}

TEST(ContourFile, AnEmptySetIsTwelveBytes) {
  const ScratchFolder folder;
  const ContourHandle set = MakeEmptySet();
  Fields(set).edge_threshold = -7;
  EXPECT_EQ(ctd_save(set.get(), folder.File("empty.ctd").c_str()), 0);
  EXPECT_EQ(Contents(folder.File("empty.ctd")), Bytes(I{0}, I{0}, I{-7}));
}

TEST(ContourFile, ASortedSetIsSavedInTableOrder) {
  const ScratchFolder folder;
  const ContourHandle set = SmallSet();
  ctd_sort(set.get(), 1);
  EXPECT_EQ(ctd_save(set.get(), folder.File("sorted.ctd").c_str()), 0);
  const std::string saved = Contents(folder.File("sorted.ctd"));
  EXPECT_EQ(saved.substr(0, 48), Bytes(I{3}, I{6}, I{23},  //
                                       I{2}, I{3}, I{1},   // the longest first
                                       I{0}, I{2}, I{0},   //
                                       I{5}, I{1}, I{0}));
  EXPECT_EQ(saved.substr(48, 8), Bytes(0.1));  // points stay in array order
  EXPECT_EQ(saved.size(), 12u + 12 * 3 + 28 * 6);
}

TEST(ContourFile, SavingReplacesAnOlderFile) {
  const ScratchFolder folder;
  WriteBytes(folder.File("old.ctd"), std::string(5000, 'x'));
  EXPECT_EQ(ctd_save(MakeEmptySet().get(), folder.File("old.ctd").c_str()), 0);
  EXPECT_EQ(Contents(folder.File("old.ctd")).size(), 12u);
}

TEST(ContourFile, ASavedSetComesBackWhole) {
  const ScratchFolder folder;
  const ContourHandle set = SmallSet();
  ctd_sort(set.get(), 0);
  ASSERT_EQ(ctd_save(set.get(), folder.File("set.ctd").c_str()), 0);

  const ContourHandle loaded = MakeSet({{{{9, 9, 9, 9}}, false}});
  EXPECT_EQ(ctd_load(loaded.get(), folder.File("set.ctd").c_str()), 0);
  const CCrawler& a = Fields(set);
  const CCrawler& b = Fields(loaded);
  ASSERT_EQ(b.contour_count, 3);
  ASSERT_EQ(b.point_count, 6);
  EXPECT_EQ(b.edge_threshold, 23);
  EXPECT_EQ(b.contour_capacity, 3);
  EXPECT_EQ(b.point_capacity, 6);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(b.contours[i].start, a.contours[i].start);
    EXPECT_EQ(b.contours[i].size, a.contours[i].size);
    EXPECT_EQ(b.contours[i].closed, a.contours[i].closed);
  }
  for (int k = 0; k < 6; ++k) {
    EXPECT_EQ(b.x[k], a.x[k]);
    EXPECT_EQ(b.y[k], a.y[k]);
    EXPECT_EQ(b.g[k], a.g[k]);
    EXPECT_EQ(b.f[k], a.f[k]);
  }
}

TEST(ContourFile, LoadingKeepsWhatFilesDoNotHold) {
  const ScratchFolder folder;
  ASSERT_EQ(ctd_save(SmallSet().get(), folder.File("set.ctd").c_str()), 0);
  const ContourHandle loaded = MakeEmptySet();
  CCrawler& fields = Fields(loaded);
  fields.step = 0.5;
  fields.min_size = 4;
  fields.max_size = 44;
  fields.min_dist = 0.25;
  fields.edgeIm = new CEdgeImgComplement;
  CEdgeImgComplement* const edges = fields.edgeIm;
  ASSERT_EQ(ctd_load(loaded.get(), folder.File("set.ctd").c_str()), 0);
  EXPECT_EQ(fields.step, 0.5);
  EXPECT_EQ(fields.min_size, 4);
  EXPECT_EQ(fields.max_size, 44);
  EXPECT_EQ(fields.min_dist, 0.25);
  EXPECT_EQ(fields.edgeIm, edges);
}

TEST(ContourFile, AnEmptySetComesBackEmpty) {
  const ScratchFolder folder;
  ASSERT_EQ(ctd_save(MakeEmptySet().get(), folder.File("empty.ctd").c_str()), 0);
  const ContourHandle loaded = SmallSet();
  EXPECT_EQ(ctd_load(loaded.get(), folder.File("empty.ctd").c_str()), 0);
  EXPECT_EQ(ctd_contour_count(loaded.get()), 0);
  EXPECT_EQ(ctd_point_count(loaded.get()), 0);
  EXPECT_EQ(ctd_active_point_count(loaded.get()), 0);
}

}  // namespace
}  // namespace orvandel::test
