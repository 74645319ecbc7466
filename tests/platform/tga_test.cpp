#include <gtest/gtest.h>

#include "tests/platform/image_files.h"

namespace orvandel::test {
namespace {

TEST(Tga, IsWrittenRunLengthCodedFromTheBottomUp) {
  const ScratchFolder folder;
  const ImagePtr image = MakeImage(4, 2, [](int x, int y) { return y == 0 ? 10 * x : 99; });
  ASSERT_EQ(im_file_write(image.get(), Utf8(folder / "a.tga").c_str(), 0), 0);
  const Bytes expected = {0,    0,  11, 0,  0, 0, 0, 0,  // grey, run-length coded, no palette
                          0,    0,  0,  0,  4, 0, 2, 0,  // origin, width, height
                          8,    0,                       // bits a pixel; bottom-up
                          0x83, 99,                      // four times 99
                          0x03, 0,  10, 20, 30};         // four pixels as they are
  EXPECT_EQ(ReadBytes(folder / "a.tga"), expected);
}

TEST(Tga, IsNotRead) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(4, 2);
  ASSERT_EQ(im_file_write(image.get(), Utf8(folder / "a.tga").c_str(), 0), 0);
  EXPECT_EQ(InfoOf(folder / "a.tga").error, kImageFileForeign);
}

}  // namespace
}  // namespace orvandel::test
