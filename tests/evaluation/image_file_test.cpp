#include "evaluation/image_file.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "evaluation/file_error.h"
#include "tests/support/contains.h"
#include "tests/support/file_bytes.h"
#include "tests/support/grey16_png.h"
#include "tests/support/images.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::evaluation::test {

using orvandel::test::Contains;
using orvandel::test::MakeImage;
using orvandel::test::ScratchFolder;
using orvandel::test::WriteBytes;

namespace {

std::string ErrorOfReading(const std::string& path) {
  try {
    ReadImage(path);
  } catch (const FileError& error) {
    return error.what();
  }
  return "";
}

TEST(ImageFile, PixelsAreThoseOfTheFile) {
  const ScratchFolder folder;
  const auto grey = [](int x, int y) { return 20 * x + y; };
  const ImagePtr written = MakeImage(5, 3, grey);
  ASSERT_EQ(im_file_write(written.get(), folder.File("a.png").c_str(), 0), 0);
  const ImageFile file = ReadImage(folder.File("a.png"));
  ASSERT_EQ(file.image->width, 5);
  ASSERT_EQ(file.image->height, 3);
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 5; ++x)
      EXPECT_EQ(file.image->row[y][x], grey(x, y)) << x << ", " << y;
  }
  EXPECT_FALSE(file.WasConverted());
}

TEST(ImageFile, TellsThatColourWasConverted) {
  const ScratchFolder folder;
  WriteBytes(folder.File("a.ppm"), "P6\n1 1\n255\nabc");
  const ImageFile file = ReadImage(folder.File("a.ppm"));
  EXPECT_EQ(file.channels, 3);
  EXPECT_TRUE(file.WasConverted());
}

TEST(ImageFile, AGreyPngOf16BitsIsReadWithAllOfThem) {
  const ScratchFolder folder;
  WriteBytes(folder.File("deep.png"), orvandel::test::Grey16Png({{0, 1, 255}, {256, 4095, 65535}}));
  const ImageFile file = ReadImage(folder.File("deep.png"));
  EXPECT_EQ(file.grey16, (std::vector<std::uint16_t>{0, 1, 255, 256, 4095, 65535}));
  EXPECT_EQ(file.image->row[1][2], 255);  // the 8 bits that everybody sees
  EXPECT_EQ(file.image->row[0][0], 0);
}

TEST(ImageFile, OtherFilesHaveNoMoreThan8Bits) {
  const ScratchFolder folder;
  const ImagePtr grey = MakeImage(4, 3, [](int x, int y) { return 20 * x + y; });
  ASSERT_EQ(im_file_write(grey.get(), folder.File("a.png").c_str(), 0), 0);
  EXPECT_TRUE(ReadImage(folder.File("a.png")).grey16.empty());
  WriteBytes(folder.File("a.ppm"), "P6\n1 1\n255\nabc");
  EXPECT_TRUE(ReadImage(folder.File("a.ppm")).grey16.empty());
}

TEST(ImageFile, ACopyLeavesTheOriginalAlone) {
  ImageFile file;
  file.image = MakeImage(2, 1, [](int, int) { return 7; });
  const ImagePtr copy = CopyOf(file);
  copy->row[0][1] = 99;
  EXPECT_EQ(file.image->row[0][1], 7);
}

TEST(ImageFile, ErrorsSayWhatIsWrongWithWhichFile) {
  const ScratchFolder folder;
  WriteBytes(folder.File("text.png"), "no image");
  const std::string missing = folder.File("missing.png");
  EXPECT_EQ(ErrorOfReading(missing), missing + ": no such file");
  EXPECT_TRUE(Contains(ErrorOfReading(folder.Path().string()), "folder"));
  EXPECT_TRUE(Contains(ErrorOfReading(folder.File("text.png")), "not a picture"));
}

}  // namespace
}  // namespace orvandel::evaluation::test
