#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/host_image.h"
#include "tests/platform/image_files.h"

namespace orvandel::test {
namespace {

namespace fs = std::filesystem;

constexpr int kByExtension = 0;
constexpr int kBmp = 1;

int Write(const ImagePtr& image, const fs::path& path, int file_type = kByExtension) {
  return im_file_write(image.get(), Utf8(path).c_str(), file_type);
}

/// The format that a file is of, by its first byte.
char FirstByte(const fs::path& path) {
  return static_cast<char>(ReadBytes(path).at(0));
}

TEST(ImageFile, ComesBackUnchangedFromEveryLosslessFormatAtEverySize) {
  const ScratchFolder folder;
  for (const char* name : {"a.bmp", "a.pgm", "a.png"}) {
    for (int width = 1; width <= 9; ++width) {
      for (int height = 1; height <= 5; ++height) {
        const ImagePtr image = MakeTexture(width, height);
        ASSERT_EQ(Write(image, folder / name), 0);
        const ReadResult result = ReadImageFile(folder / name, width, height);
        EXPECT_EQ(result.error, 0);
        EXPECT_EQ(result.pixels, PixelsOf(*image)) << name << ' ' << width << 'x' << height;
        EXPECT_EQ(InfoOf(folder / name), (FileInfo{0, width, height, 1, 8}));
      }
    }
  }
}

TEST(ImageFile, ALargeImageComesBackUnchanged) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(1003, 257);
  for (const char* name : {"a.bmp", "a.pgm", "a.png"}) {
    ASSERT_EQ(Write(image, folder / name), 0);
    EXPECT_EQ(ReadImageFile(folder / name, 1003, 257).pixels, PixelsOf(*image)) << name;
  }
}

TEST(ImageFile, AHostsRowsAreWrittenAndRead) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(7, 5);
  for (const char* name : {"a.bmp", "a.pgm", "a.png", "a.tga", "a.jpg"}) {
    HostImage source(7, 5);
    for (int y = 0; y < 5; ++y) {
      for (int x = 0; x < 7; ++x)
        source.At(x, y) = image->row[y][x];
    }
    ASSERT_EQ(im_file_write(source.get(), Utf8(folder / name).c_str(), kByExtension), 0) << name;
    const Bytes file = ReadBytes(folder / name);
    ASSERT_EQ(Write(image, folder / name), 0);
    EXPECT_EQ(file, ReadBytes(folder / name)) << name;
  }
  HostImage target(7, 5);
  ASSERT_EQ(im_file_read(target.get(), Utf8(folder / "a.png").c_str(), kByExtension), 0);
  EXPECT_EQ(PixelsOf(*target.get()), PixelsOf(*image));
}

TEST(ImageFile, ExtensionChoosesTheFormatWhateverItsCase) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(8, 8);
  const std::vector<std::pair<const char*, char>> names = {
      {"a.bmp", 'B'},    {"a.BMP", 'B'},      {"a.Pgm", 'P'},
      {"a.pNG", '\x89'}, {"a.JPG", '\xff'},   {"a.Jpeg", '\xff'},
      {"a.TGA", '\0'},   {"a.b.png", '\x89'}, {"a.png.bmp", 'B'}};
  for (const auto& [name, first_byte] : names) {
    ASSERT_EQ(Write(image, folder / name), 0) << name;
    EXPECT_EQ(FirstByte(folder / name), first_byte) << name;
  }
}

TEST(ImageFile, WithAnExtensionThatIsNotKnownIsABitmap) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(3, 2);
  for (const char* name : {"a", "a.", ".png", "a.tiff", "a.pngx", "png", "a.png~"}) {
    ASSERT_EQ(Write(image, folder / name), 0) << name;
    EXPECT_EQ(FirstByte(folder / name), 'B') << name;
    EXPECT_EQ(ReadImageFile(folder / name, 3, 2).pixels, PixelsOf(*image)) << name;
  }
}

TEST(ImageFile, OfTheBitmapTypeIsABitmapWhateverItsName) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(3, 2);
  ASSERT_EQ(Write(image, folder / "a.png", kBmp), 0);
  EXPECT_EQ(FirstByte(folder / "a.png"), 'B');
  EXPECT_EQ(ReadImageFile(folder / "a.png", 3, 2, kBmp).pixels, PixelsOf(*image));
  EXPECT_EQ(InfoOf(folder / "a.png", kBmp), (FileInfo{0, 3, 2, 1, 8}));
  EXPECT_EQ(ReadImageFile(folder / "a.png", 3, 2).error, kImageFileForeign);
}

TEST(ImageFile, PathsAreUtf8) {
  const ScratchFolder folder;
  const fs::path path = folder / fs::path(u8"Schl\u00fcssel \u5de5\u4ef6.png");
  const ImagePtr image = MakeTexture(3, 2);
  ASSERT_EQ(Write(image, path), 0);
  EXPECT_TRUE(fs::exists(path));
  EXPECT_EQ(ReadImageFile(path, 3, 2).pixels, PixelsOf(*image));
}

TEST(ImageFile, OfAnotherSizeIsNotRead) {
  const ScratchFolder folder;
  for (const char* name : {"a.bmp", "a.pgm", "a.png", "a.jpg"}) {
    ASSERT_EQ(Write(MakeTexture(6, 4), folder / name), 0);
    for (const auto& [width, height] : {std::pair(6, 5), std::pair(5, 4), std::pair(4, 6)}) {
      const ReadResult result = ReadImageFile(folder / name, width, height);
      EXPECT_EQ(result.error, kImageFileSizeMismatch) << name;
      EXPECT_EQ(result.pixels, Untouched(width, height)) << name;
    }
  }
}

TEST(ImageFile, CutAnywhereIsNotRead) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(5, 3);
  for (const char* extension : {".bmp", ".pgm", ".png", ".jpg"}) {
    const BytesAsImageFile image_file(extension);
    ASSERT_EQ(Write(image, image_file.Path()), 0);
    const Bytes whole = ReadBytes(image_file.Path());
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const ReadResult result = image_file.Read(cut, 5, 3);
      EXPECT_EQ(result.error, kImageFileTruncated) << extension << ' ' << size;
      EXPECT_EQ(result.pixels, Untouched(5, 3)) << extension << ' ' << size;
    }
  }
}

TEST(ImageFile, OfForeignContentsIsNotRead) {
  for (const char* extension : {".bmp", ".pgm", ".png", ".jpg"}) {
    const BytesAsImageFile image_file(extension);
    for (const Bytes& bytes :
         {BytesOf("<html><body>404</body></html>"), Bytes(5000, 0), Bytes(5000, 0xfe)}) {
      const ReadResult result = image_file.Read(bytes, 5, 3);
      EXPECT_EQ(result.error, kImageFileForeign) << extension;
      EXPECT_EQ(result.pixels, Untouched(5, 3)) << extension;
      EXPECT_EQ(InfoOf(image_file.Path()).error, kImageFileForeign) << extension;
    }
  }
}

TEST(ImageFile, ThatIsNotThereIsNotRead) {
  const ScratchFolder folder;
  EXPECT_EQ(ReadImageFile(folder / "none.bmp", 2, 2).error, kImageFileCannotOpen);
  EXPECT_EQ(ReadImageFile(folder / "none" / "none.bmp", 2, 2).error, kImageFileCannotOpen);
  EXPECT_EQ(InfoOf(folder / "none.png").error, kImageFileCannotOpen);
  EXPECT_EQ(InfoOf("").error, kImageFileCannotOpen);
}

TEST(ImageFile, ThatIsAFolderIsNotRead) {
  const ScratchFolder folder;
  fs::create_directory(folder / "a.bmp");
  EXPECT_EQ(ReadImageFile(folder / "a.bmp", 2, 2).error, kImageFileCannotOpen);
  EXPECT_EQ(InfoOf(folder / "a.bmp").error, kImageFileCannotOpen);
}

TEST(ImageFile, SizeThatCannotBeReadLeavesTheResultsAlone) {
  EXPECT_EQ(InfoOf("no such file.bmp"), (FileInfo{kImageFileCannotOpen, -1, -1, -1, -1}));
}

TEST(ImageFile, ResultsOfTheSizeMayBeLeftOut) {
  const ScratchFolder folder;
  const std::string path = Utf8(folder / "a.bmp");
  ASSERT_EQ(Write(MakeTexture(6, 4), folder / "a.bmp"), 0);
  int height = 0;
  EXPECT_EQ(im_file_get_size(path.c_str(), kBmp, nullptr, &height, nullptr, nullptr), 0);
  EXPECT_EQ(height, 4);
  EXPECT_EQ(im_file_get_size(path.c_str(), kBmp, nullptr, nullptr, nullptr, nullptr), 0);
}

TEST(ImageFile, NullArgumentsAreRefused) {
  const ScratchFolder folder;
  const std::string path = Utf8(folder / "a.bmp");
  const ImagePtr image = MakeTexture(2, 2);
  EXPECT_EQ(im_file_write(nullptr, path.c_str(), kBmp), kImageFileBadArgument);
  EXPECT_EQ(im_file_write(image.get(), nullptr, kBmp), kImageFileBadArgument);
  EXPECT_EQ(im_file_read(nullptr, path.c_str(), kBmp), kImageFileBadArgument);
  EXPECT_EQ(im_file_read(image.get(), nullptr, kBmp), kImageFileBadArgument);
  EXPECT_EQ(im_file_get_size(nullptr, kBmp, nullptr, nullptr, nullptr, nullptr),
            kImageFileBadArgument);
  EXPECT_EQ(folder.Names().size(), 0U);
}

TEST(ImageFile, UnknownTypesAreRefused) {
  const ScratchFolder folder;
  const ImagePtr image = MakeTexture(2, 2);
  ASSERT_EQ(Write(image, folder / "a.bmp"), 0);
  for (const int file_type : {-1, 2, 100}) {
    EXPECT_EQ(Write(image, folder / "b.bmp", file_type), kImageFileBadArgument);
    EXPECT_EQ(ReadImageFile(folder / "a.bmp", 2, 2, file_type).error, kImageFileBadArgument);
    EXPECT_EQ(InfoOf(folder / "a.bmp", file_type).error, kImageFileBadArgument);
  }
  EXPECT_EQ(folder.Names().size(), 1U);
}

TEST(ImageFile, ImagesThatAreNotGreyAreRefused) {
  const ScratchFolder folder;
  const ImagePtr image(im_create(2, 2, 2));
  EXPECT_EQ(Write(image, folder / "a.bmp"), kImageFileBadArgument);
  ASSERT_EQ(Write(MakeTexture(2, 2), folder / "a.bmp"), 0);
  EXPECT_EQ(im_file_read(image.get(), Utf8(folder / "a.bmp").c_str(), kBmp), kImageFileBadArgument);
  EXPECT_EQ(PixelsOf(*image), (Pixels{{0, 0}, {0, 0}}));
}

TEST(ImageFile, OverlongImagesAreNotWritten) {
  const ScratchFolder folder;
  for (const char* name : {"a.bmp", "a.pgm", "a.png", "a.jpg", "a.tga"}) {
    EXPECT_EQ(Write(ImagePtr(im_create(1, 65536, 1)), folder / name), kImageFileTooLarge) << name;
    EXPECT_EQ(Write(ImagePtr(im_create(1, 1, 65536)), folder / name), kImageFileTooLarge) << name;
  }
  EXPECT_EQ(folder.Names().size(), 0U);
}

TEST(ImageFile, TheLongestImagesComeBackUnchanged) {
  const ScratchFolder folder;
  for (const char* name : {"a.bmp", "a.pgm", "a.png"}) {
    for (const auto& [width, height] : {std::pair(65535, 1), std::pair(1, 65535)}) {
      const ImagePtr image = MakeTexture(width, height);
      ASSERT_EQ(Write(image, folder / name), 0) << name;
      EXPECT_TRUE(ReadImageFile(folder / name, width, height).pixels == PixelsOf(*image)) << name;
    }
  }
}

TEST(ImageFile, InAMissingFolderIsNotWritten) {
  const ScratchFolder folder;
  EXPECT_EQ(Write(MakeTexture(2, 2), folder / "none" / "a.bmp"), kImageFileCannotWrite);
  EXPECT_EQ(Write(MakeTexture(2, 2), ""), kImageFileCannotWrite);
  EXPECT_EQ(folder.Names().size(), 0U);
}

#if defined(__linux__)
TEST(ImageFile, OnAFullDeviceIsAnError) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  EXPECT_EQ(Write(MakeTexture(2, 2), "/dev/full"), kImageFileCannotWrite);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST(ImageFile, DevicesAreNotRead) {
  if (!fs::exists("/dev/zero")) GTEST_SKIP() << "no /dev/zero here";
  EXPECT_EQ(ReadImageFile("/dev/zero", 2, 2).error, kImageFileCannotOpen);
}
#endif

}  // namespace
}  // namespace orvandel::test
