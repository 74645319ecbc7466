#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/image_files.h"

namespace orvandel::test {
namespace {

Pixels PixelsIn(const Bytes& file, int width, int height) {
  const ReadResult result = BytesAsImageFile(".pnm").Read(file, width, height);
  EXPECT_EQ(result.error, 0);
  return result.pixels;
}

int PnmError(const Bytes& file) {
  const ReadResult result = BytesAsImageFile(".pnm").Read(file, 2, 1);
  EXPECT_EQ(result.pixels, result.error == 0 ? result.pixels : Untouched(2, 1));
  return result.error;
}

TEST(Pnm, IsWrittenAsARawGreyMap) {
  const ImagePtr image = MakeImage(3, 2, [](int x, int y) { return 65 + 3 * y + x; });
  const ScratchFolder folder;
  for (const char* name : {"a.pgm", "a.pnm", "a.ppm"}) {
    ASSERT_EQ(im_file_write(image.get(), Utf8(folder / name).c_str(), 0), 0);
    EXPECT_EQ(ReadBytes(folder / name), BytesOf("P5\n3 2\n255\nABCDEF")) << name;
  }
}

TEST(Pnm, RawGreyIsRead) {
  EXPECT_EQ(PixelsIn(BytesOf("P5\n3 2\n255\nABCDEF"), 3, 2), (Pixels{{65, 66, 67}, {68, 69, 70}}));
}

TEST(Pnm, PixelsThatLookLikeBlanksOrCommentsAreRead) {
  EXPECT_EQ(PixelsIn(BytesOf("P5 4 1 255\n\n# #"), 4, 1), (Pixels{{10, 35, 32, 35}}));
}

TEST(Pnm, PlainGreyIsRead) {
  EXPECT_EQ(PixelsIn(BytesOf("P2\n3 2\n255\n0 10 255\n7 8  009"), 3, 2),
            (Pixels{{0, 10, 255}, {7, 8, 9}}));
}

TEST(Pnm, CommentsStandAnywhereBetweenTheNumbers) {
  EXPECT_EQ(
      PixelsIn(BytesOf("P2# kind\n# a comment\n2 # 99\n 1\r\n#\n255 # white\n 5 # 6\n 7"), 2, 1),
      (Pixels{{5, 7}}));
  EXPECT_EQ(PixelsIn(BytesOf("P5\n#2 1\n2 1#\n255\nAB"), 2, 1), (Pixels{{65, 66}}));
}

TEST(Pnm, ColourBecomesGrey) {
  EXPECT_EQ(PixelsIn(BytesOf("P3 2 1 255 255 0 0 0 0 255"), 2, 1), (Pixels{{76, 29}}));
  EXPECT_EQ(PixelsIn(BytesOf("P6 2 1 255\n") + Bytes{0, 255, 0, 8, 8, 8}, 2, 1),
            (Pixels{{150, 8}}));
}

TEST(Pnm, OtherGreatestValuesAreScaledAndRounded) {
  EXPECT_EQ(PixelsIn(BytesOf("P2 5 1 4 0 1 2 3 4"), 5, 1),
            (Pixels{{0, 64, 128, 191, 255}}));  // 63.75, 127.5, 191.25
  EXPECT_EQ(PixelsIn(BytesOf("P5 2 1 1\n") + Bytes{0, 1}, 2, 1), (Pixels{{0, 255}}));
  EXPECT_EQ(PixelsIn(BytesOf("P2 3 1 65535 0 32768 65535"), 3, 1), (Pixels{{0, 128, 255}}));
}

TEST(Pnm, SamplesOfTwoBytesAreReadHighByteFirst) {
  const Bytes file = BytesOf("P5 2 1 1000\n") + Bytes{0x03, 0xe8, 0x00, 0xc8};  // 1000, 200
  EXPECT_EQ(PixelsIn(file, 2, 1), (Pixels{{255, 51}}));
  EXPECT_EQ(BytesAsImageFile(".pgm").Info(file), (FileInfo{0, 2, 1, 1, 16}));
}

TEST(Pnm, HeaderIsReported) {
  const BytesAsImageFile image_file(".ppm");
  EXPECT_EQ(image_file.Info(BytesOf("P5 2 1 255\nAB")), (FileInfo{0, 2, 1, 1, 8}));
  EXPECT_EQ(image_file.Info(BytesOf("P3 1 2 255 1 2 3 4 5 6")), (FileInfo{0, 1, 2, 3, 8}));
}

TEST(Pnm, SampleAboveTheGreatestIsForeign) {
  EXPECT_EQ(PnmError(BytesOf("P2 2 1 100 100 101")), kImageFileForeign);
  EXPECT_EQ(PnmError(BytesOf("P5 2 1 100\ne~")), kImageFileForeign);
  EXPECT_EQ(PnmError(BytesOf("P2 2 1 255 1 99999999999999999999")), kImageFileForeign);
}

TEST(Pnm, OtherKindsAndBrokenHeadersAreForeign) {
  for (const char* file :
       {"P1 2 1 0 1 1 1", "P4 2 1 ab", "P7\nWIDTH 2", "P55 2 1 255\nAB", "Q5 2 1 255\nAB",
        "P52 1 255\nAB", "P5 -2 1 255\nAB", "P5 2 x 255\nAB", "P5 2 1 0\nAB",
        "P5 2 1 65536\nABCDEF", "P5 2 1 255xAB", "P5 0 1 255\nAB", "P5 2 0 255\nAB",
        "P2 2 1 255 1 -2", "P2 2 1 255 1 x2"})
    EXPECT_EQ(PnmError(BytesOf(file)), kImageFileForeign) << file;
}

TEST(Pnm, OfAbsurdSizeIsTooLarge) {
  for (const char* file : {"P5 65536 1 255\nAB", "P5 1 65536 255\nAB",
                           "P5 99999999999999999999 99999999999999999999 255\nAB"})
    EXPECT_EQ(PnmError(BytesOf(file)), kImageFileTooLarge) << file;
}

TEST(Pnm, ThatPromisesMorePixelsThanItHasIsTruncated) {
  for (const char* kind : {"P2", "P3", "P5", "P6"}) {
    const std::string file = std::string(kind) + " 65535 65535 255\n0 0 0 0";
    EXPECT_EQ(BytesAsImageFile(".pnm").Info(BytesOf(file)).error, kImageFileTruncated) << kind;
  }
}

/// A plain file's last number, of one digit, may end with the file.
TEST(Pnm, CutAnywhereIsRefused) {
  const BytesAsImageFile image_file(".pnm");
  for (const char* text : {"P5 # two\n2 1\n255\nAB", "P6 2 1 255\nABCDEF", "P5 2 1 400\n\1A\1B",
                           "P2 2 1\n255\n100 7", "P3 2 1 255 10 20 30 40 50 6"}) {
    const Bytes whole = BytesOf(text);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const ReadResult result = image_file.Read(cut, 2, 1);
      EXPECT_EQ(result.error, kImageFileTruncated) << text << ": " << size;
      EXPECT_EQ(result.pixels, Untouched(2, 1));
    }
    EXPECT_EQ(image_file.Read(whole, 2, 1).error, 0) << text;
  }
}

}  // namespace
}  // namespace orvandel::test
