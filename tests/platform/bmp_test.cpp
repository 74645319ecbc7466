#include <cstdint>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/image_files.h"

namespace orvandel::test {
namespace {

Bytes Le16(std::uint32_t value) {
  return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
}

Bytes Le32(std::uint32_t value) {
  return Le16(value) + Le16(value >> 16);
}

Bytes GreyPalette(int num_entries = 256) {
  Bytes palette;
  for (int i = 0; i < num_entries; ++i) {
    const auto value = static_cast<std::uint8_t>(i);
    palette = std::move(palette) + Bytes{value, value, value, 0};
  }
  return palette;
}

/// The parts of a bitmap file, to be changed by a test before they are put together.
struct Bitmap {
  std::int32_t width = 3;
  std::int32_t height = 2;
  std::uint32_t bits = 8;
  std::uint32_t compression = 0;
  std::uint32_t colours_used = 0;
  std::uint32_t info_size = 40;
  Bytes masks;  // behind the first 40 bytes of the bitmap header
  Bytes palette = GreyPalette();
  Bytes pixels = {4, 5, 6, 0, 1, 2, 3, 0};
  int pixel_offset_shift = 0;

  Bytes File() const {
    Bytes rest_of_info = masks;
    if (info_size > 40 + masks.size()) rest_of_info.resize(info_size - 40);
    const auto pixels_at = static_cast<std::uint32_t>(
        54 + static_cast<int>(rest_of_info.size() + palette.size()) + pixel_offset_shift);
    const Bytes file_header = BytesOf("BM") +
                              Le32(pixels_at + static_cast<std::uint32_t>(pixels.size())) +
                              Le32(0) + Le32(pixels_at);
    const Bytes info_header = Le32(info_size) + Le32(static_cast<std::uint32_t>(width)) +
                              Le32(static_cast<std::uint32_t>(height)) + Le16(1) + Le16(bits) +
                              Le32(compression) + Le32(0) + Le32(2835) + Le32(2835) +
                              Le32(colours_used) + Le32(0);
    return file_header + info_header + rest_of_info + palette + pixels;
  }
};

/// 24 bits a pixel: blue, green and red; the values are in `kColourGreys`.
Bitmap ColourBitmap() {
  Bitmap bitmap;
  bitmap.bits = 24;
  bitmap.palette = {};
  bitmap.pixels = {0, 0, 255, 0,   255, 0, 255, 0, 0, 0, 0, 0,  // bottom row and padding
                   9, 9, 9,   255, 255, 0, 10,  0, 0, 0, 0, 0};
  return bitmap;
}
const Pixels kColourGreys = {{9, 179, 1}, {76, 150, 29}};  // 0.114 * 10 = 1.14

int BmpError(const Bitmap& bitmap) {
  const BytesAsImageFile image_file(".bmp");
  const ReadResult result = image_file.Read(bitmap.File(), 3, 2);
  EXPECT_EQ(result.pixels, result.error == 0 ? result.pixels : Untouched(3, 2));
  return result.error;
}

Pixels PixelsIn(const Bitmap& bitmap) {
  const BytesAsImageFile image_file(".bmp");
  const ReadResult result = image_file.Read(bitmap.File(), 3, 2);
  EXPECT_EQ(result.error, 0);
  return result.pixels;
}

FileInfo InfoIn(const Bitmap& bitmap) {
  return BytesAsImageFile(".bmp").Info(bitmap.File());
}

TEST(Bmp, IsWrittenWithAGreyPaletteFromTheBottomUp) {
  const ImagePtr image = MakeImage(3, 2, [](int x, int y) { return 100 * y + 10 * x; });
  const Bytes expected = Bytes{'B',  'M', 0x3e, 4, 0, 0,        // 1086 bytes in all
                               0,    0,   0,    0,              // reserved
                               0x36, 4,   0,    0,              // pixels at 1078
                               40,   0,   0,    0,              // size of the bitmap header
                               3,    0,   0,    0,              // width
                               2,    0,   0,    0,              // height, positive: bottom-up
                               1,    0,   8,    0,              // planes, bits a pixel
                               0,    0,   0,    0,              // not compressed
                               8,    0,   0,    0,              // bytes of pixels
                               0,    0,   0,    0, 0, 0, 0, 0,  // no resolution
                               0,    1,   0,    0,              // 256 colours used
                               0,    0,   0,    0} +            // all important
                         GreyPalette() +
                         Bytes{100, 110, 120, 0,  // bottom row, padded to four bytes
                               0,   10,  20,  0};
  const ScratchFolder folder;
  ASSERT_EQ(im_file_write(image.get(), Utf8(folder / "a.bmp").c_str(), 1), 0);
  EXPECT_EQ(ReadBytes(folder / "a.bmp"), expected);
}

TEST(Bmp, IsReadFromTheBottomUp) {
  EXPECT_EQ(PixelsIn(Bitmap()), (Pixels{{1, 2, 3}, {4, 5, 6}}));
}

TEST(Bmp, WithNegativeHeightIsReadFromTheTopDown) {
  Bitmap bitmap;
  bitmap.height = -2;
  EXPECT_EQ(PixelsIn(bitmap), (Pixels{{4, 5, 6}, {1, 2, 3}}));
  EXPECT_EQ(InfoIn(bitmap), (FileInfo{0, 3, 2, 1, 8}));
}

TEST(Bmp, GreyPaletteOutOfOrderGivesItsValues) {
  Bitmap bitmap;
  for (std::size_t i = 0; i < bitmap.palette.size(); ++i) {
    if (i % 4 != 3) bitmap.palette[i] = static_cast<std::uint8_t>(255 - i / 4);
  }
  EXPECT_EQ(PixelsIn(bitmap), (Pixels{{254, 253, 252}, {251, 250, 249}}));
  EXPECT_EQ(InfoIn(bitmap), (FileInfo{0, 3, 2, 1, 8}));
}

TEST(Bmp, ColourPaletteBecomesGrey) {
  Bitmap bitmap;
  bitmap.colours_used = 3;
  bitmap.palette = {255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 0};  // blue, green, red
  bitmap.pixels = {0, 1, 2, 0, 2, 1, 0, 0};
  EXPECT_EQ(PixelsIn(bitmap), (Pixels{{76, 150, 29}, {29, 150, 76}}));
  EXPECT_EQ(InfoIn(bitmap), (FileInfo{0, 3, 2, 3, 8}));
}

TEST(Bmp, With24BitsBecomesGrey) {
  EXPECT_EQ(PixelsIn(ColourBitmap()), kColourGreys);
  EXPECT_EQ(InfoIn(ColourBitmap()), (FileInfo{0, 3, 2, 3, 8}));
}

/// The colours of `ColourBitmap` with a fourth byte each, whose value does not matter.
Bitmap WideColourBitmap() {
  Bitmap bitmap = ColourBitmap();
  bitmap.bits = 32;
  bitmap.pixels = {0, 0, 255, 1, 0,   255, 0, 2, 255, 0, 0, 3,
                   9, 9, 9,   4, 255, 255, 0, 5, 10,  0, 0, 6};
  return bitmap;
}

TEST(Bmp, With32BitsBecomesGrey) {
  EXPECT_EQ(PixelsIn(WideColourBitmap()), kColourGreys);
  EXPECT_EQ(InfoIn(WideColourBitmap()), (FileInfo{0, 3, 2, 4, 8}));
}

TEST(Bmp, WithTheUsualBitFieldsIsRead) {
  Bitmap bitmap = WideColourBitmap();
  bitmap.compression = 3;
  bitmap.masks = Le32(0xff0000) + Le32(0xff00) + Le32(0xff);
  EXPECT_EQ(PixelsIn(bitmap), kColourGreys);
  bitmap.info_size = 108;  // the masks are then inside the header
  EXPECT_EQ(PixelsIn(bitmap), kColourGreys);
}

TEST(Bmp, WithOtherBitFieldsIsForeign) {
  Bitmap bitmap = WideColourBitmap();
  bitmap.compression = 3;
  bitmap.masks = Le32(0xff) + Le32(0xff00) + Le32(0xff0000);
  EXPECT_EQ(BmpError(bitmap), kImageFileForeign);
}

TEST(Bmp, WithALongerHeaderIsRead) {
  for (const std::uint32_t size : {52U, 56U, 64U, 108U, 124U}) {
    Bitmap bitmap;
    bitmap.info_size = size;
    EXPECT_EQ(PixelsIn(bitmap), (Pixels{{1, 2, 3}, {4, 5, 6}})) << size;
  }
}

TEST(Bmp, WithAnotherHeaderIsForeign) {
  for (const std::uint32_t size : {0U, 12U, 39U, 125U, 0xffffffffU}) {
    Bitmap bitmap;
    Bytes file = bitmap.File();
    const Bytes size_bytes = Le32(size);
    std::copy(size_bytes.begin(), size_bytes.end(), file.begin() + 14);
    EXPECT_EQ(BytesAsImageFile(".bmp").Info(file).error, kImageFileForeign) << size;
  }
}

TEST(Bmp, WithAGapBeforeThePixelsIsRead) {
  Bitmap bitmap;
  bitmap.pixel_offset_shift = 5;
  bitmap.pixels = Bytes{99, 99, 99, 99, 99} + bitmap.pixels;
  EXPECT_EQ(PixelsIn(bitmap), (Pixels{{1, 2, 3}, {4, 5, 6}}));
}

TEST(Bmp, WhosePixelsBeginInsideThePaletteIsForeign) {
  Bitmap bitmap;
  bitmap.pixel_offset_shift = -1;
  EXPECT_EQ(BmpError(bitmap), kImageFileForeign);
}

TEST(Bmp, WhosePixelsBeginInsideTheHeaderIsForeign) {
  Bitmap bitmap = ColourBitmap();
  bitmap.pixel_offset_shift = -1;
  EXPECT_EQ(BmpError(bitmap), kImageFileForeign);
}

TEST(Bmp, ThatIsCompressedIsForeign) {
  for (const std::uint32_t compression : {1U, 2U, 3U, 4U, 5U, 6U, 11U}) {
    Bitmap bitmap;
    bitmap.compression = compression;
    EXPECT_EQ(BmpError(bitmap), kImageFileForeign) << compression;
  }
}

TEST(Bmp, OfAnotherDepthIsForeign) {
  for (const std::uint32_t bits : {0U, 1U, 4U, 16U, 48U, 64U}) {
    Bitmap bitmap;
    bitmap.bits = bits;
    EXPECT_EQ(BmpError(bitmap), kImageFileForeign) << bits;
  }
}

TEST(Bmp, PaletteIndexBeyondThePaletteIsForeign) {
  Bitmap bitmap;
  bitmap.colours_used = 6;
  bitmap.palette = GreyPalette(6);
  EXPECT_EQ(BmpError(bitmap), kImageFileForeign);  // the last pixel is 6
  bitmap.colours_used = 7;
  bitmap.palette = GreyPalette(7);
  EXPECT_EQ(PixelsIn(bitmap), (Pixels{{1, 2, 3}, {4, 5, 6}}));
}

TEST(Bmp, WithMoreThan256ColoursIsForeign) {
  Bitmap bitmap;
  bitmap.colours_used = 257;
  bitmap.palette = GreyPalette(257);
  EXPECT_EQ(BmpError(bitmap), kImageFileForeign);
  bitmap.colours_used = 0xffffffff;
  EXPECT_EQ(BmpError(bitmap), kImageFileForeign);
}

TEST(Bmp, OfNoOrNegativeSizeIsForeign) {
  const std::vector<std::pair<int, int>> sizes = {{0, 2}, {3, 0}, {-3, 2}, {-2147483647 - 1, 2}};
  for (const auto& [width, height] : sizes) {
    Bitmap bitmap;
    bitmap.width = width;
    bitmap.height = height;
    EXPECT_EQ(BmpError(bitmap), kImageFileForeign) << width << 'x' << height;
  }
}

TEST(Bmp, OfAbsurdSizeIsTooLarge) {
  const std::vector<std::pair<int, int>> sizes = {
      {65536, 2}, {3, 65536}, {3, -65536}, {2147483647, 2147483647}, {3, -2147483647 - 1}};
  for (const auto& [width, height] : sizes) {
    Bitmap bitmap;
    bitmap.width = width;
    bitmap.height = height;
    EXPECT_EQ(BmpError(bitmap), kImageFileTooLarge) << width << 'x' << height;
  }
}

TEST(Bmp, ThatPromisesMorePixelsThanItHasIsTruncated) {
  Bitmap bitmap;
  bitmap.width = 65535;
  bitmap.height = 65535;
  EXPECT_EQ(InfoIn(bitmap).error, kImageFileTruncated);
}

TEST(Bmp, CutAnywhereIsRefused) {
  const BytesAsImageFile image_file(".bmp");
  for (const Bitmap& bitmap : {Bitmap(), ColourBitmap(), WideColourBitmap()}) {
    const Bytes whole = bitmap.File();
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const ReadResult result = image_file.Read(cut, 3, 2);
      EXPECT_EQ(result.error, kImageFileTruncated) << size << " of " << whole.size();
      EXPECT_EQ(result.pixels, Untouched(3, 2));
    }
  }
}

TEST(Bmp, BytesBehindThePixelsDoNotMatter) {
  Bitmap bitmap;
  bitmap.pixels = bitmap.pixels + Bytes{1, 2, 3};
  EXPECT_EQ(PixelsIn(bitmap), (Pixels{{1, 2, 3}, {4, 5, 6}}));
}

}  // namespace
}  // namespace orvandel::test
