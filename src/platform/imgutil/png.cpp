#include "platform/imgutil/png.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/imgutil/byte_order.h"
#include "platform/imgutil/stb_codec.h"

namespace orvandel {
namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

// A chunk: length of its data, type, data, checksum over type and data.
constexpr std::size_t kChunkFrame = 12;
constexpr std::size_t kMaxPaletteSize = 768;  // 256 colours of three bytes

constexpr std::uint32_t ChunkType(char a, char b, char c, char d) {
  return static_cast<std::uint32_t>(a) << 24 | static_cast<std::uint32_t>(b) << 16 |
         static_cast<std::uint32_t>(c) << 8 | static_cast<std::uint32_t>(d);
}
constexpr std::uint32_t kHeader = ChunkType('I', 'H', 'D', 'R');
constexpr std::uint32_t kPalette = ChunkType('P', 'L', 'T', 'E');
constexpr std::uint32_t kData = ChunkType('I', 'D', 'A', 'T');
constexpr std::uint32_t kEnd = ChunkType('I', 'E', 'N', 'D');

/// A decoder that does not know a chunk may pass it over if the type's first letter is small.
bool IsCritical(std::uint32_t type) {
  return (type & 0x20000000) == 0;
}

constexpr std::array<std::uint32_t, 256> MakeChecksumTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t rest = byte;
    for (int bit = 0; bit < 8; ++bit)
      rest = rest & 1 ? rest >> 1 ^ 0xedb88320 : rest >> 1;
    table[byte] = rest;
  }
  return table;
}

std::uint32_t Checksum(ByteView bytes) {
  static constexpr auto kTable = MakeChecksumTable();
  std::uint32_t rest = 0xffffffff;
  for (const std::uint8_t byte : bytes)
    rest = kTable[(rest ^ byte) & 0xff] ^ rest >> 8;
  return ~rest;
}

struct Chunk {
  std::uint32_t type = 0;
  ByteView data;
};

/// Reads the chunk at `at` and moves `at` behind it.
ImageFileError ReadChunk(ByteView bytes, std::size_t& at, Chunk& chunk) {
  if (bytes.size() - at < kChunkFrame) return kImageFileTruncated;
  const std::size_t length = BigEndian32(bytes, at);
  if (bytes.size() - at - kChunkFrame < length) return kImageFileTruncated;
  const ByteView checked = bytes.subspan(at + 4, 4 + length);
  if (Checksum(checked) != BigEndian32(bytes, at + 8 + length)) return kImageFileForeign;
  chunk = {BigEndian32(bytes, at + 4), checked.subspan(4)};
  at += kChunkFrame + length;
  return kImageFileOk;
}

void AppendChunk(const Chunk& chunk, Bytes& file) {
  AppendBigEndian32(file, static_cast<std::uint32_t>(chunk.data.size()));
  const std::size_t checked_at = file.size();
  AppendBigEndian32(file, chunk.type);
  file.insert(file.end(), chunk.data.begin(), chunk.data.end());
  AppendBigEndian32(file, Checksum(ByteView(file).subspan(checked_at)));
}

ImageFileError CheckSignature(ByteView bytes) {
  const std::size_t known = std::min(bytes.size(), kSignature.size());
  if (!std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(known),
                  kSignature.begin()))
    return kImageFileForeign;
  return known < kSignature.size() ? kImageFileTruncated : kImageFileOk;
}

/// A kind of pixel: its channels, and the sample sizes in bits that it comes in, which are powers of
/// two, as their sum.
struct ColourType {
  int channels;
  unsigned bit_depths;
};
constexpr std::array<ColourType, 7> kColourTypes = {{
    {1, 1 + 2 + 4 + 8 + 16},  // grey
    {},
    {3, 8 + 16},         // colour
    {3, 1 + 2 + 4 + 8},  // palette of colours
    {2, 8 + 16},         // grey and alpha
    {},
    {4, 8 + 16},  // colour and alpha
}};
constexpr unsigned kColourTypePalette = 3;

bool IsPowerOfTwo(unsigned value) {
  return value != 0 && (value & (value - 1)) == 0;
}

bool IsKnown(unsigned colour_type, unsigned bit_depth) {
  return colour_type < kColourTypes.size() && IsPowerOfTwo(bit_depth) &&
         (kColourTypes[colour_type].bit_depths & bit_depth) != 0;
}

struct Header {
  ImageFileInfo info;
  bool has_palette = false;
  int sample_bits = 0;  // of what is packed: palette indices or channels
  int samples_per_pixel = 0;

  /// Bytes of the image when inflated, but for the filter type of each row.
  std::uint64_t PackedBytes() const {
    const auto bits_per_pixel = static_cast<unsigned>(sample_bits * samples_per_pixel);
    const std::uint64_t bits_per_row =
        std::uint64_t{bits_per_pixel} * static_cast<unsigned>(info.width);
    return (bits_per_row + 7) / 8 * static_cast<unsigned>(info.height);
  }
  std::uint64_t DecodedBytes() const {
    return info.NumPixels() * static_cast<unsigned>(info.channels) * (sample_bits == 16 ? 2 : 1);
  }
};

ImageFileError ReadHeader(ByteView bytes, Header& header) {
  if (const auto error = CheckSignature(bytes)) return error;
  std::size_t at = kSignature.size();
  Chunk chunk;
  if (const auto error = ReadChunk(bytes, at, chunk)) return error;
  if (chunk.type != kHeader || chunk.data.size() != 13) return kImageFileForeign;
  const std::uint8_t bit_depth = chunk.data[8];
  const std::uint8_t colour_type = chunk.data[9];
  if (!IsKnown(colour_type, bit_depth)) return kImageFileForeign;

  header.has_palette = colour_type == kColourTypePalette;
  header.sample_bits = bit_depth;
  header.info.channels = kColourTypes[colour_type].channels;
  header.samples_per_pixel = header.has_palette ? 1 : header.info.channels;
  header.info.bits_per_channel = header.has_palette ? 8 : bit_depth;
  return TakeSize(BigEndian32(chunk.data, 0), BigEndian32(chunk.data, 4), header.info);
}

/// The most that so many compressed bytes can give: the method reaches 1032 to 1.
std::uint64_t MostInflatedBytes(std::uint64_t compressed_bytes) {
  return 1032 * compressed_bytes;
}

ImageFileError ReadInfo(ByteView beginning, std::uint64_t file_size, ImageFileInfo& info) {
  Header header;
  if (const auto error = ReadHeader(beginning, header)) return error;
  if (header.DecodedBytes() > kMaxCodecBytes) return kImageFileTooLarge;
  if (header.PackedBytes() > MostInflatedBytes(file_size)) return kImageFileTruncated;
  info = header.info;
  return kImageFileOk;
}

/// A palette of full length, black where the file has none, so that no index points beyond it.
ImageFileError AppendFullPalette(const Chunk& chunk, Bytes& file) {
  if (chunk.data.size() > kMaxPaletteSize) return kImageFileForeign;
  Bytes palette(chunk.data.begin(), chunk.data.end());
  palette.resize(kMaxPaletteSize);
  AppendChunk({kPalette, palette}, file);
  return kImageFileOk;
}

/// Checks every chunk up to the last and copies those that make the grey image: transparency and
/// what decoders may pass over is left out.
ImageFileError CopyEssentialChunks(ByteView file, bool has_palette, Bytes& copy) {
  copy.assign(kSignature.begin(), kSignature.end());
  Chunk chunk;
  for (std::size_t at = kSignature.size(); chunk.type != kEnd;) {
    if (const auto error = ReadChunk(file, at, chunk)) return error;
    if (chunk.type == kPalette) {
      if (!has_palette) continue;  // only a hint for displays of few colours
      if (const auto error = AppendFullPalette(chunk, copy)) return error;
    } else if (chunk.type == kHeader || chunk.type == kData || chunk.type == kEnd) {
      AppendChunk(chunk, copy);
    } else if (IsCritical(chunk.type)) {
      return kImageFileForeign;
    }
  }
  return kImageFileOk;
}

ImageFileError Decode(ByteView file, const ImageFileInfo& info, Bytes& grey) {
  Header header;
  Bytes essential;
  if (const auto error = ReadHeader(file, header)) return error;
  if (const auto error = CopyEssentialChunks(file, header.has_palette, essential)) return error;
  return DecodeWithStb(essential, info, grey);
}

}  // namespace

const ImageFileReader kPngReader = {ReadInfo, Decode};

ImageFileError EncodePng(const tImage& image, Bytes& file) {
  return EncodeWithStb(image, StbFormat::kPng, file);
}

}  // namespace orvandel
