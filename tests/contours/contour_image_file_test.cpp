#include <cmath>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"
#include "tests/support/file_bytes.h"
#include "tests/support/grids.h"
#include "tests/support/scratch_folder.h"

// Images of a set, written to files and read back.
namespace orvandel::test {
namespace {

Grid ReadBack(const std::string& path) {
  int width = 0, height = 0, channels = 0, bits = 0;
  EXPECT_EQ(im_file_get_size(path.c_str(), 0, &width, &height, &channels, &bits), 0);
  EXPECT_EQ(channels, 1);
  EXPECT_EQ(bits, 8);
  const ImagePtr image(im_create(1, width, height));
  EXPECT_EQ(im_file_read(image.get(), path.c_str(), 0), 0);
  return image == nullptr ? Grid{} : GridOf(*image);
}

Grid SavedImage(const ContourHandle& set) {
  const ScratchFolder folder;
  EXPECT_EQ(ctd_save_img(set.get(), folder.File("set.bmp").c_str()), 0);
  return ReadBack(folder.File("set.bmp"));
}

TEST(ContourImageFile, IsAsWideAndHighAsTheTruncatedLargestCoordinates) {
  const Grid saved =
      SavedImage(MakeSet({{{{2.5, 3.5}, {6.9, 1.2}}, false}, {{{4.1, 5.7}, {0.5, 0.25}}, true}}));
  ASSERT_EQ(Width(saved), 6);
  ASSERT_EQ(Height(saved), 5);
  Grid expected = MakeGrid(6, 5);
  At(expected, 2, 3) = 250;
  At(expected, 0, 0) = 250;  // the points at column 6 and row 5 fall outside
  EXPECT_EQ(saved, expected);
}

TEST(ContourImageFile, HasNoMarks) {
  TestContour contour;
  for (int k = 0; k < 12; ++k)
    contour.points.push_back({1.5 + k, 1.5, 0, 0});
  contour.points.push_back({30, 30, 0, 0});
  const Grid saved = SavedImage(MakeSet({contour}));
  ASSERT_EQ(Width(saved), 30);
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 30; ++x)
      EXPECT_EQ(At(saved, x, y), y == 1 && x >= 1 && x <= 12 ? 250 : 0) << x << ' ' << y;
  }
}

TEST(ContourImageFile, TheFormatGoesByTheExtension) {
  const ScratchFolder folder;
  const ContourHandle set = MakeSet({{{{2.5, 3.5}, {9.5, 8.5}}, false}});
  EXPECT_EQ(ctd_save_img(set.get(), folder.File("set.bmp").c_str()), 0);
  EXPECT_EQ(ctd_save_img(set.get(), folder.File("set.pgm").c_str()), 0);
  EXPECT_EQ(ctd_save_img(set.get(), folder.File("set.png").c_str()), 0);
  EXPECT_EQ(Contents(folder.File("set.bmp")).substr(0, 2), "BM");
  EXPECT_EQ(Contents(folder.File("set.pgm")).substr(0, 2), "P5");
  EXPECT_EQ(Contents(folder.File("set.png")).substr(1, 3), "PNG");
  EXPECT_EQ(ReadBack(folder.File("set.png")), ReadBack(folder.File("set.bmp")));
}

TEST(ContourImageFile, PointsAtNegativePositionsFallOutside) {
  const Grid saved = SavedImage(MakeSet({{{{-3, 1}, {1, -3}, {-0.5, -0.5}, {4, 4}}, false}}));
  Grid expected = MakeGrid(4, 4);
  At(expected, 0, 0) = 250;  // -0.5 truncates to 0
  EXPECT_EQ(saved, expected);
}

void ExpectNothingWritten(const ContourHandle& set) {
  const ScratchFolder folder;
  EXPECT_EQ(ctd_save_img(set.get(), folder.File("set.bmp").c_str()), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path().string()));
}

TEST(ContourImageFile, OfAnEmptySetIsNotWritten) {
  ExpectNothingWritten(MakeEmptySet());
}

TEST(ContourImageFile, WithoutWidthOrHeightIsNotWritten) {
  ExpectNothingWritten(MakeSet({{{{0.75, 9}, {0.5, 3}}, false}}));
  ExpectNothingWritten(MakeSet({{{{9, 0.75}}, false}}));
  ExpectNothingWritten(MakeSet({{{{-5, -5}}, false}}));
}

TEST(ContourImageFile, BeyondAnySizeIsNotWritten) {
  ExpectNothingWritten(MakeSet({{{{2147483647.0, 2147483647.0}}, false}}));
  ExpectNothingWritten(MakeSet({{{{1e300, 5}}, false}}));
  ExpectNothingWritten(MakeSet({{{{std::nan(""), std::nan("")}}, false}}));
}

TEST(ContourImageFile, ThatCannotBeWrittenReturnsZeroAllTheSame) {
  const ScratchFolder folder;
  const ContourHandle set = MakeSet({{{{2.5, 3.5}, {9.5, 8.5}}, false}});
  EXPECT_EQ(ctd_save_img(set.get(), folder.File("no/such/folder.bmp").c_str()), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path().string()));
}

}  // namespace
}  // namespace orvandel::test
