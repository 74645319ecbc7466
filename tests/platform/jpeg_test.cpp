#include <cstdint>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/image_files.h"
#include "tests/platform/jpeg_builder.h"

namespace orvandel::test {
namespace {

Pixels Flat(int value) {
  return Pixels(8, std::vector<int>(8, value));
}

int JpegError(const Bytes& file) {
  const ReadResult result = BytesAsImageFile(".jpg").Read(file, 8, 8);
  EXPECT_EQ(result.pixels, result.error == 0 ? result.pixels : Untouched(8, 8));
  return result.error;
}

TEST(Jpeg, GreyIsRead) {
  const ReadResult result = BytesAsImageFile(".jpg").Read(FlatJpeg().File(), 8, 8);
  EXPECT_EQ(result.error, 0);
  EXPECT_EQ(result.pixels, Flat(200));
  EXPECT_EQ(BytesAsImageFile(".jpeg").Info(FlatJpeg().File()), (FileInfo{0, 8, 8, 1, 8}));
}

TEST(Jpeg, ColourBecomesGrey) {
  FlatJpeg jpeg;
  jpeg.channels = 3;
  // Luminance 200 as above, blue difference 0 (code 10), red difference 72 (code 0, 1001000), each
  // with the end code 0: 0 1001000 0, 10 0, 0 1001000 0, ones.
  jpeg.scan = {0x48, 0x44, 0x87};
  // Red 200 + 1.402 * 72 is above 255, green 200 - 0.714 * 72 = 148.6, blue 200.
  const int grey = (299 * 255 + 587 * 149 + 114 * 200 + 500) / 1000;
  const ReadResult result = BytesAsImageFile(".jpg").Read(jpeg.File(), 8, 8);
  EXPECT_EQ(result.error, 0);
  for (const auto& row : result.pixels) {
    for (const int pixel : row)
      EXPECT_NEAR(pixel, grey, 1);  // decoders round green as they like
  }
  EXPECT_EQ(BytesAsImageFile(".jpg").Info(jpeg.File()), (FileInfo{0, 8, 8, 3, 8}));
}

TEST(Jpeg, WithALongPreviewBeforeItsHeaderIsRead) {
  FlatJpeg jpeg;
  // A preview is a JPEG file itself, with an end marker of its own.
  const Bytes preview = JpegSegment(0xe1, FlatJpeg().File() + Bytes(65000, 0xff));
  jpeg.before_frame = preview + preview + preview;
  EXPECT_EQ(BytesAsImageFile(".jpg").Info(jpeg.File()), (FileInfo{0, 8, 8, 1, 8}));
  EXPECT_EQ(BytesAsImageFile(".jpg").Read(jpeg.File(), 8, 8).pixels, Flat(200));
}

TEST(Jpeg, BytesBehindTheEndDoNotMatter) {
  EXPECT_EQ(JpegError(FlatJpeg().File() + Bytes(10)), 0);
}

TEST(Jpeg, CutAnywhereIsRefused) {
  const BytesAsImageFile image_file(".jpg");
  const Bytes whole = FlatJpeg().File();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const ReadResult result = image_file.Read(cut, 8, 8);
    EXPECT_EQ(result.error, kImageFileTruncated) << size << " of " << whole.size();
    EXPECT_EQ(result.pixels, Untouched(8, 8));
  }
}

TEST(Jpeg, WithoutPixelsIsTruncated) {
  FlatJpeg jpeg;
  jpeg.has_scan = false;
  EXPECT_EQ(JpegError(jpeg.File()), kImageFileTruncated);
}

TEST(Jpeg, WithoutAFrameIsForeign) {
  const Bytes no_frame = FlatJpeg::Start() + FlatJpeg::Quantisers() + FlatJpeg::Codes();
  EXPECT_EQ(JpegError(no_frame + FlatJpeg::End()), kImageFileForeign);
  EXPECT_EQ(JpegError(no_frame + FlatJpeg().Scan() + FlatJpeg::End()), kImageFileForeign);
}

TEST(Jpeg, WithoutTablesIsForeign) {
  const Bytes rest = FlatJpeg().Frame() + FlatJpeg().Scan() + FlatJpeg::End();
  EXPECT_EQ(JpegError(FlatJpeg::Start() + rest), kImageFileForeign);
  EXPECT_EQ(JpegError(FlatJpeg::Start() + FlatJpeg::Quantisers() + rest), kImageFileForeign);
  EXPECT_EQ(JpegError(FlatJpeg::Start() + FlatJpeg::Codes() + rest), kImageFileForeign);
}

/// A file with one more table of codes, which its scan does not use: so many of 15 and of 16 bits.
int ErrorOfCodeCounts(std::uint8_t num_15_bits, std::uint8_t num_16_bits, const Bytes& values) {
  Bytes counts(16);
  counts[14] = num_15_bits;
  counts[15] = num_16_bits;
  FlatJpeg jpeg;
  jpeg.before_frame = JpegSegment(0xc4, Bytes{0x01} + counts + values);
  return JpegError(jpeg.File());
}

TEST(Jpeg, WithMoreCodesThanBytesHaveValuesIsForeign) {
  EXPECT_EQ(ErrorOfCodeCounts(1, 255, Bytes(256)), 0);
  EXPECT_EQ(ErrorOfCodeCounts(2, 255, Bytes(257)), kImageFileForeign);
  EXPECT_EQ(ErrorOfCodeCounts(255, 255, Bytes(510)), kImageFileForeign);
}

TEST(Jpeg, WithFewerValuesThanCodesIsForeign) {
  EXPECT_EQ(ErrorOfCodeCounts(0, 255, Bytes(254)), kImageFileForeign);
  FlatJpeg cut_head;
  cut_head.before_frame = JpegSegment(0xc4, Bytes(16));
  EXPECT_EQ(JpegError(cut_head.File()), kImageFileForeign);
}

TEST(Jpeg, OfTwelveBitsIsForeign) {
  FlatJpeg jpeg;
  jpeg.precision = 12;
  EXPECT_EQ(JpegError(jpeg.File()), kImageFileForeign);
}

TEST(Jpeg, OfNoBitsOrTooManyHasNoSize) {
  const BytesAsImageFile image_file(".jpg");
  FlatJpeg jpeg;
  for (const std::uint8_t precision : Bytes{0, 1, 17, 255}) {
    jpeg.precision = precision;
    EXPECT_EQ(image_file.Info(jpeg.File()).error, kImageFileForeign) << int{precision};
  }
}

TEST(Jpeg, OfNoSizeOrNoChannelsIsForeign) {
  FlatJpeg no_width;
  no_width.width = 0;
  EXPECT_EQ(JpegError(no_width.File()), kImageFileForeign);
  FlatJpeg no_height;
  no_height.height = 0;
  EXPECT_EQ(JpegError(no_height.File()), kImageFileForeign);
  FlatJpeg no_channels;
  no_channels.channels = 0;
  EXPECT_EQ(JpegError(no_channels.File()), kImageFileForeign);
}

TEST(Jpeg, ThatPromisesMorePixelsThanItCanHoldIsRefused) {
  const BytesAsImageFile image_file(".jpg");
  FlatJpeg jpeg;
  jpeg.width = jpeg.height = 20000;
  EXPECT_EQ(image_file.Info(jpeg.File()).error, kImageFileTruncated);
  jpeg.width = jpeg.height = 65535;
  EXPECT_EQ(image_file.Info(jpeg.File()).error, kImageFileTooLarge);
}

TEST(Jpeg, WrittenAndReadAgainIsNearlyTheSame) {
  const ScratchFolder folder;
  for (const auto& [width, height] : {std::pair(1, 1), std::pair(7, 9), std::pair(33, 20)}) {
    const ImagePtr image = MakeRamp(width, height);
    ASSERT_EQ(im_file_write(image.get(), Utf8(folder / "a.jpg").c_str(), 0), 0);
    const ReadResult result = ReadImageFile(folder / "a.jpg", width, height);
    ASSERT_EQ(result.error, 0);
    for (int y = 0; y < height; ++y) {
      // Steps between the levels kept are at most about 10 at this quality, for the finest detail.
      for (int x = 0; x < width; ++x)
        EXPECT_NEAR(result.pixels[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)],
                    image->row[y][x], 5);
    }
  }
}

TEST(Jpeg, WrittenAndCutAnywhereIsRefused) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(9, 9);
  ASSERT_EQ(im_file_write(image.get(), Utf8(folder / "a.jpg").c_str(), 0), 0);
  const Bytes whole = ReadBytes(folder / "a.jpg");
  const BytesAsImageFile image_file(".jpg");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(image_file.Read(cut, 9, 9).error, kImageFileTruncated) << size;
  }
}

}  // namespace
}  // namespace orvandel::test
