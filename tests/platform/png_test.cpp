#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/image_files.h"
#include "tests/platform/png_builder.h"

namespace orvandel::test {
namespace {

Pixels PixelsIn(const Png& png) {
  const ReadResult result = BytesAsImageFile(".png").Read(png.File(), 3, 2);
  EXPECT_EQ(result.error, 0);
  return result.pixels;
}

FileInfo InfoIn(const Png& png) {
  return BytesAsImageFile(".png").Info(png.File());
}

int PngError(const Bytes& file) {
  const ReadResult result = BytesAsImageFile(".png").Read(file, 3, 2);
  EXPECT_EQ(result.pixels, result.error == 0 ? result.pixels : Untouched(3, 2));
  return result.error;
}

const Pixels kOneToSix = {{1, 2, 3}, {4, 5, 6}};

TEST(PngBuilder, ChecksumIsTheKnownOne) {
  EXPECT_EQ(ChunkChecksum(BytesOf("123456789")), 0xcbf43926U);
}

TEST(Png, GreyIsReadUnchanged) {
  EXPECT_EQ(PixelsIn(Png()), kOneToSix);
  EXPECT_EQ(InfoIn(Png()), (FileInfo{0, 3, 2, 1, 8}));
}

TEST(Png, AlphaIsPassedOver) {
  Png png;
  png.colour_type = 4;
  png.rows = {{1, 0, 2, 255, 3, 128}, {4, 9, 5, 9, 6, 9}};
  EXPECT_EQ(PixelsIn(png), kOneToSix);
  EXPECT_EQ(InfoIn(png), (FileInfo{0, 3, 2, 2, 8}));
}

TEST(Png, ColourBecomesGrey) {
  Png png;
  png.colour_type = 2;
  png.rows = {{255, 0, 0, 0, 255, 0, 0, 0, 255}, {7, 7, 7, 0, 0, 0, 255, 255, 255}};
  EXPECT_EQ(PixelsIn(png), (Pixels{{76, 150, 29}, {7, 0, 255}}));
  EXPECT_EQ(InfoIn(png), (FileInfo{0, 3, 2, 3, 8}));
}

TEST(Png, ColourWithAlphaBecomesGrey) {
  Png png;
  png.colour_type = 6;
  png.rows = {{255, 0, 0, 0, 0, 255, 0, 9, 0, 0, 255, 9},
              {7, 7, 7, 9, 0, 0, 0, 9, 255, 255, 255, 0}};
  EXPECT_EQ(PixelsIn(png), (Pixels{{76, 150, 29}, {7, 0, 255}}));
  EXPECT_EQ(InfoIn(png), (FileInfo{0, 3, 2, 4, 8}));
}

TEST(Png, OneTransparentGreyIsPassedOver) {
  Png png;
  png.before_data = PngChunk("tRNS", {0, 5});
  EXPECT_EQ(PixelsIn(png), kOneToSix);
  EXPECT_EQ(InfoIn(png).channels, 1);
}

TEST(Png, SixteenBitsKeepTheHighByte) {
  Png png;
  png.bit_depth = 16;
  png.rows = {{1, 0, 2, 127, 3, 255}, {4, 128, 5, 0, 6, 0}};
  EXPECT_EQ(PixelsIn(png), kOneToSix);
  EXPECT_EQ(InfoIn(png), (FileInfo{0, 3, 2, 1, 16}));
}

TEST(Png, FewBitsAreSpreadFromBlackToWhite) {
  Png png;
  png.bit_depth = 1;
  png.rows = {{0xa0}, {0x40}};  // 101, 010
  EXPECT_EQ(PixelsIn(png), (Pixels{{255, 0, 255}, {0, 255, 0}}));
  EXPECT_EQ(InfoIn(png), (FileInfo{0, 3, 2, 1, 1}));
  png.bit_depth = 4;
  png.rows = {{0x12, 0xf0}, {0x70, 0x80}};
  EXPECT_EQ(PixelsIn(png), (Pixels{{17, 34, 255}, {119, 0, 136}}));
}

Png PalettePng(const Bytes& palette) {
  Png png;
  png.colour_type = 3;
  png.before_data = PngChunk("PLTE", palette);
  png.rows = {{0, 1, 2}, {2, 1, 0}};
  return png;
}

TEST(Png, PaletteBecomesGrey) {
  const Png png = PalettePng({255, 0, 0, 0, 255, 0, 50, 50, 50});
  EXPECT_EQ(PixelsIn(png), (Pixels{{76, 150, 50}, {50, 150, 76}}));
  EXPECT_EQ(InfoIn(png), (FileInfo{0, 3, 2, 3, 8}));
}

TEST(Png, PaletteWithTransparencyBecomesGrey) {
  Png png = PalettePng({255, 0, 0, 0, 255, 0, 50, 50, 50});
  png.before_data = png.before_data + PngChunk("tRNS", {0, 0, 0});
  EXPECT_EQ(PixelsIn(png), (Pixels{{76, 150, 50}, {50, 150, 76}}));
}

TEST(Png, IndexBeyondThePaletteIsBlack) {
  EXPECT_EQ(PixelsIn(PalettePng({255, 255, 255, 9, 9, 9})), (Pixels{{255, 9, 0}, {0, 9, 255}}));
}

TEST(Png, PaletteIndicesWithoutAPaletteAreForeign) {
  Png png;
  png.colour_type = 3;
  EXPECT_EQ(PngError(png.File()), kImageFileForeign);
}

TEST(Png, PaletteOfMoreThan256ColoursIsForeign) {
  EXPECT_EQ(PngError(PalettePng(Bytes(3 * 257)).File()), kImageFileForeign);
}

TEST(Png, SuggestedPaletteOfAColourImageIsPassedOver) {
  Png png;
  png.colour_type = 2;
  png.before_data = PngChunk("PLTE", Bytes(9, 200));
  png.rows = {{7, 7, 7, 8, 8, 8, 9, 9, 9}, {1, 1, 1, 2, 2, 2, 3, 3, 3}};
  EXPECT_EQ(PixelsIn(png), (Pixels{{7, 8, 9}, {1, 2, 3}}));
}

TEST(Png, DataMayComeInSeveralChunks) {
  const Png png;
  const Bytes stream = StoredStream(png.Packed());
  Bytes file = Png::Signature() + png.Header();
  for (const std::uint8_t byte : stream)
    file = std::move(file) + PngChunk("IDAT", {byte});
  EXPECT_EQ(PngError(file + PngChunk("IEND", {})), 0);
}

TEST(Png, ChunksThatMayBePassedOverAre) {
  Png png;
  png.before_data = PngChunk("tEXt", BytesOf("Title")) + PngChunk("gAMA", {0, 1, 2, 3});
  png.after_data = PngChunk("zzZz", Bytes(100, 1));
  EXPECT_EQ(PixelsIn(png), kOneToSix);
}

TEST(Png, UnknownChunksThatMatterAreForeign) {
  Png png;
  png.before_data = PngChunk("ABCD", {});
  EXPECT_EQ(PngError(png.File()), kImageFileForeign);
}

TEST(Png, AnyWrongBitIsRefused) {
  const Bytes whole = Png().File();
  const BytesAsImageFile image_file(".png");
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const int bit : {0, 5, 7}) {
      Bytes damaged = whole;
      damaged[i] = static_cast<std::uint8_t>(damaged[i] ^ 1 << bit);
      const ReadResult result = image_file.Read(damaged, 3, 2);
      EXPECT_NE(result.error, 0) << "byte " << i;
      EXPECT_EQ(result.pixels, Untouched(3, 2));
    }
  }
}

TEST(Png, CutAnywhereIsRefused) {
  const BytesAsImageFile image_file(".png");
  for (const Png& png : {Png(), PalettePng({1, 1, 1, 2, 2, 2, 3, 3, 3})}) {
    const Bytes whole = png.File();
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const ReadResult result = image_file.Read(cut, 3, 2);
      EXPECT_EQ(result.error, kImageFileTruncated) << size << " of " << whole.size();
      EXPECT_EQ(result.pixels, Untouched(3, 2));
    }
  }
}

TEST(Png, DataThatEndEarlyAreRefused) {
  Png png;
  png.rows.pop_back();
  EXPECT_EQ(PngError(png.File()), kImageFileForeign);
  EXPECT_EQ(PngError(Png::Signature() + Png().Header() + PngChunk("IEND", {})), kImageFileForeign);
}

TEST(Png, StrangeHeadersAreForeign) {
  for (const int colour_type : {1, 5, 7, 255}) {
    Png png;
    png.colour_type = static_cast<std::uint8_t>(colour_type);
    EXPECT_EQ(PngError(png.File()), kImageFileForeign) << colour_type;
  }
  for (const int bit_depth : {0, 3, 7, 32, 255}) {
    Png png;
    png.bit_depth = static_cast<std::uint8_t>(bit_depth);
    EXPECT_EQ(PngError(png.File()), kImageFileForeign) << bit_depth;
  }
  Png few_bits_of_colour;
  few_bits_of_colour.colour_type = 2;
  few_bits_of_colour.bit_depth = 4;
  EXPECT_EQ(PngError(few_bits_of_colour.File()), kImageFileForeign);
  const Bytes without_header =
      Png::Signature() + PngChunk("IDAT", Bytes(13)) + PngChunk("IEND", {});
  EXPECT_EQ(PngError(without_header), kImageFileForeign);
}

TEST(Png, OfNoSizeIsForeign) {
  Png png;
  png.width = 0;
  EXPECT_EQ(InfoIn(png).error, kImageFileForeign);
}

TEST(Png, OfAbsurdSizeIsTooLarge) {
  Png png;
  png.width = 65536;
  EXPECT_EQ(InfoIn(png).error, kImageFileTooLarge);
  png.width = 0xffffffff;
  EXPECT_EQ(InfoIn(png).error, kImageFileTooLarge);
  png.width = png.height = 65535;
  EXPECT_EQ(InfoIn(png).error, kImageFileTooLarge);
}

TEST(Png, ThatPromisesMorePixelsThanItCanHoldIsTruncated) {
  Png png;
  png.width = png.height = 20000;
  EXPECT_EQ(InfoIn(png).error, kImageFileTruncated);
}

/// Of an image of 3 by 2 zeros, which needs 8 bytes, and of one that inflates to far more.
TEST(Png, ThatInflatesToFarMoreThanItsImageIsRefused) {
  const auto file_of = [](int num_runs) {
    return Png::Signature() + Png().Header() + PngChunk("IDAT", StreamOfZeros(num_runs)) +
           PngChunk("IEND", {});
  };
  EXPECT_EQ(PngError(file_of(1)), 0);
  EXPECT_EQ(PngError(file_of(100'000)), kImageFileForeign);  // 26 MB
}

}  // namespace
}  // namespace orvandel::test
