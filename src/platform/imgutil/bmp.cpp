#include "platform/imgutil/bmp.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/imgutil/byte_order.h"
#include "platform/imgutil/grey.h"

namespace orvandel {
namespace {

// Two headers stand at the beginning: the file's, then the bitmap's, which begins with its own
// size. Every version of the latter has these fields at these places.
constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kInfoHeaderSize = 40;    // the first version
constexpr std::size_t kLargestInfoSize = 124;  // the fifth
constexpr std::size_t kPixelOffsetAt = 10;
constexpr std::size_t kInfoSizeAt = 14;
constexpr std::size_t kWidthAt = 18;
constexpr std::size_t kHeightAt = 22;
constexpr std::size_t kBitsAt = 28;
constexpr std::size_t kCompressionAt = 30;
constexpr std::size_t kColoursUsedAt = 46;
constexpr std::size_t kMasksAt = 54;  // red, green and blue

constexpr std::uint32_t kNotCompressed = 0;
constexpr std::uint32_t kBitFields = 3;
constexpr std::size_t kFullPalette = 256;
constexpr std::size_t kPaletteEntrySize = 4;  // blue, green, red, unused

// Where the pixels of a written file begin.
constexpr std::uint32_t kWrittenPixelsAt =
    kFileHeaderSize + kInfoHeaderSize + kPaletteEntrySize * kFullPalette;

struct Layout {
  ImageFileInfo info;
  bool top_down = false;
  std::size_t bytes_per_pixel = 0;
  std::size_t palette_at = 0;
  std::size_t palette_entries = 0;
  std::size_t pixels_at = 0;
  std::size_t stride = 0;
};

std::size_t Stride(std::size_t bytes_per_row) {
  return (bytes_per_row + 3) / 4 * 4;
}

ImageFileError CheckSignature(ByteView bytes) {
  constexpr std::array<std::uint8_t, 2> kSignature = {'B', 'M'};
  const std::size_t known = std::min(bytes.size(), kSignature.size());
  if (!std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(known),
                  kSignature.begin()))
    return kImageFileForeign;
  return bytes.size() < kFileHeaderSize + kInfoHeaderSize ? kImageFileTruncated : kImageFileOk;
}

ImageFileError ReadSize(ByteView bytes, Layout& layout) {
  const auto width = static_cast<std::int32_t>(LittleEndian32(bytes, kWidthAt));
  const std::int64_t height = static_cast<std::int32_t>(LittleEndian32(bytes, kHeightAt));
  layout.top_down = height < 0;
  return TakeSize(width, layout.top_down ? -height : height, layout.info);
}

/// Bit fields are accepted where they say what 32 bits a pixel mean anyway.
ImageFileError ReadPixelFormat(ByteView bytes, Layout& layout) {
  const std::uint16_t bits = LittleEndian16(bytes, kBitsAt);
  const std::uint32_t compression = LittleEndian32(bytes, kCompressionAt);
  if (bits != 8 && bits != 24 && bits != 32) return kImageFileForeign;
  layout.bytes_per_pixel = bits / 8U;
  layout.stride = Stride(static_cast<std::size_t>(layout.info.width) * layout.bytes_per_pixel);
  layout.info.channels = bits / 8;
  layout.info.bits_per_channel = 8;
  if (compression == kNotCompressed) return kImageFileOk;

  if (compression != kBitFields || bits != 32) return kImageFileForeign;
  if (bytes.size() < kMasksAt + 12) return kImageFileTruncated;
  const bool usual = LittleEndian32(bytes, kMasksAt) == 0xff0000 &&
                     LittleEndian32(bytes, kMasksAt + 4) == 0xff00 &&
                     LittleEndian32(bytes, kMasksAt + 8) == 0xff;
  return usual ? kImageFileOk : kImageFileForeign;
}

bool IsGreyPalette(ByteView bytes, const Layout& layout) {
  for (std::size_t i = 0; i < layout.palette_entries; ++i) {
    const std::uint8_t* entry = &bytes[layout.palette_at + kPaletteEntrySize * i];
    if (entry[0] != entry[1] || entry[1] != entry[2]) return false;
  }
  return true;
}

ImageFileError ReadPalette(ByteView bytes, Layout& layout) {
  if (layout.bytes_per_pixel != 1) return kImageFileOk;
  const std::uint32_t used = LittleEndian32(bytes, kColoursUsedAt);
  if (used > kFullPalette) return kImageFileForeign;
  layout.palette_entries = used == 0 ? kFullPalette : used;
  layout.palette_at = kFileHeaderSize + LittleEndian32(bytes, kInfoSizeAt);
  const std::size_t end = layout.palette_at + kPaletteEntrySize * layout.palette_entries;
  if (end > layout.pixels_at) return kImageFileForeign;
  if (end > bytes.size()) return kImageFileTruncated;
  layout.info.channels = IsGreyPalette(bytes, layout) ? 1 : 3;
  return kImageFileOk;
}

ImageFileError ReadLayout(ByteView bytes, std::uint64_t file_size, Layout& layout) {
  if (const auto error = CheckSignature(bytes)) return error;
  const std::uint32_t info_size = LittleEndian32(bytes, kInfoSizeAt);
  if (info_size < kInfoHeaderSize || info_size > kLargestInfoSize) return kImageFileForeign;
  if (const auto error = ReadSize(bytes, layout)) return error;
  if (const auto error = ReadPixelFormat(bytes, layout)) return error;

  layout.pixels_at = LittleEndian32(bytes, kPixelOffsetAt);
  if (layout.pixels_at < kFileHeaderSize + info_size) return kImageFileForeign;
  if (const auto error = ReadPalette(bytes, layout)) return error;
  const std::uint64_t end =
      layout.pixels_at + std::uint64_t{layout.stride} * static_cast<unsigned>(layout.info.height);
  return end > file_size ? kImageFileTruncated : kImageFileOk;
}

std::array<std::uint8_t, kFullPalette> GreyPalette(ByteView bytes, const Layout& layout) {
  std::array<std::uint8_t, kFullPalette> palette{};
  for (std::size_t i = 0; i < layout.palette_entries; ++i) {
    const std::uint8_t* entry = &bytes[layout.palette_at + kPaletteEntrySize * i];
    palette[i] = GreyOf(entry[2], entry[1], entry[0]);
  }
  return palette;
}

/// Row y of the image, counted from the top.
const std::uint8_t* RowOf(ByteView file, const Layout& layout, int y) {
  const int stored = layout.top_down ? y : layout.info.height - 1 - y;
  return file.data() + layout.pixels_at + layout.stride * static_cast<std::size_t>(stored);
}

ImageFileError DecodeIndices(ByteView file, const Layout& layout, std::uint8_t* grey) {
  const auto palette = GreyPalette(file, layout);
  for (int y = 0; y < layout.info.height; ++y) {
    const std::uint8_t* row = RowOf(file, layout, y);
    for (int x = 0; x < layout.info.width; ++x) {
      if (row[x] >= layout.palette_entries) return kImageFileForeign;
      *grey++ = palette[row[x]];
    }
  }
  return kImageFileOk;
}

void DecodeColours(ByteView file, const Layout& layout, std::uint8_t* grey) {
  for (int y = 0; y < layout.info.height; ++y) {
    const std::uint8_t* pixel = RowOf(file, layout, y);
    for (int x = 0; x < layout.info.width; ++x) {
      *grey++ = GreyOf(pixel[2], pixel[1], pixel[0]);
      pixel += layout.bytes_per_pixel;
    }
  }
}

ImageFileError ReadInfo(ByteView beginning, std::uint64_t file_size, ImageFileInfo& info) {
  Layout layout;
  if (const auto error = ReadLayout(beginning, file_size, layout)) return error;
  info = layout.info;
  return kImageFileOk;
}

ImageFileError Decode(ByteView file, const ImageFileInfo& info, Bytes& grey) {
  Layout layout;
  if (const auto error = ReadLayout(file, file.size(), layout)) return error;
  grey.resize(static_cast<std::size_t>(info.NumPixels()));
  if (layout.bytes_per_pixel == 1) return DecodeIndices(file, layout, grey.data());
  DecodeColours(file, layout, grey.data());
  return kImageFileOk;
}

void AppendHeaders(const tImage& image, std::uint32_t num_pixel_bytes, Bytes& file) {
  constexpr std::uint32_t kUnknownResolution = 0;

  file.insert(file.end(), {'B', 'M'});
  AppendLittleEndian32(file, kWrittenPixelsAt + num_pixel_bytes);
  AppendLittleEndian32(file, 0);  // reserved
  AppendLittleEndian32(file, kWrittenPixelsAt);

  AppendLittleEndian32(file, kInfoHeaderSize);
  AppendLittleEndian32(file, static_cast<std::uint32_t>(image.width));
  AppendLittleEndian32(file, static_cast<std::uint32_t>(image.height));
  AppendLittleEndian16(file, 1);  // planes
  AppendLittleEndian16(file, 8);  // bits a pixel
  AppendLittleEndian32(file, kNotCompressed);
  AppendLittleEndian32(file, num_pixel_bytes);
  AppendLittleEndian32(file, kUnknownResolution);
  AppendLittleEndian32(file, kUnknownResolution);
  AppendLittleEndian32(file, kFullPalette);  // colours used
  AppendLittleEndian32(file, 0);             // all of them important
}

void AppendGreyPalette(Bytes& file) {
  for (unsigned value = 0; value < kFullPalette; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    file.insert(file.end(), {grey, grey, grey, 0});
  }
}

}  // namespace

const ImageFileReader kBmpReader = {ReadInfo, Decode};

ImageFileError EncodeBmp(const tImage& image, Bytes& file) {
  const auto width = static_cast<std::size_t>(image.width);
  const std::size_t stride = Stride(width);
  // Fits in 32 bits, as the headers need it: no side is longer than 65535 pixels.
  const std::uint64_t num_pixel_bytes = std::uint64_t{stride} * static_cast<unsigned>(image.height);

  file.clear();
  file.reserve(static_cast<std::size_t>(kWrittenPixelsAt + num_pixel_bytes));
  AppendHeaders(image, static_cast<std::uint32_t>(num_pixel_bytes), file);
  AppendGreyPalette(file);
  for (int y = image.height - 1; y >= 0; --y) {
    file.insert(file.end(), image.row[y], image.row[y] + width);
    file.insert(file.end(), stride - width, 0);
  }
  return kImageFileOk;
}

}  // namespace orvandel
