#include "platform/imgutil/jpeg.h"

#include <cstddef>
#include <numeric>

#include "platform/imgutil/byte_order.h"
#include "platform/imgutil/stb_codec.h"

namespace orvandel {
namespace {

// Markers: 0xff and one of these codes.
constexpr std::uint8_t kStuffedByte = 0x00;  // not a marker: 0xff among the pixel data
constexpr std::uint8_t kFirstRestart = 0xd0;
constexpr std::uint8_t kLastRestart = 0xd7;
constexpr std::uint8_t kStartOfImage = 0xd8;
constexpr std::uint8_t kEndOfImage = 0xd9;
constexpr std::uint8_t kStartOfScan = 0xda;
constexpr std::uint8_t kHuffmanTables = 0xc4;
constexpr std::uint8_t kQuantisers = 0xdb;

/// A frame header: its codes lie between those of tables, which are not.
bool IsStartOfFrame(std::uint8_t code) {
  return code >= 0xc0 && code <= 0xcf && code != 0xc4 && code != 0xc8 && code != 0xcc;
}

bool IsRestart(std::uint8_t code) {
  return code >= kFirstRestart && code <= kLastRestart;
}

/// A marker and the data of its segment, if it has one.
struct Segment {
  std::uint8_t code = 0;
  ByteView data;
};

/// Walks over a file's segments; the pixel data behind a scan header are passed over.
class SegmentReader {
 public:
  explicit SegmentReader(ByteView bytes) : bytes_(bytes) {}

  ImageFileError Next(Segment& segment) {
    if (!FindMarker()) return kImageFileTruncated;
    segment = {bytes_[at_ - 1], {}};
    if (segment.code == kStartOfImage || segment.code == kEndOfImage) return kImageFileOk;
    return ReadData(segment);
  }

 private:
  /// Moves behind the next marker that begins a segment.
  bool FindMarker() {
    while (at_ + 1 < bytes_.size()) {
      const std::uint8_t code = bytes_[at_ + 1];
      const bool fill = code == 0xff;
      if (bytes_[at_] == 0xff && code != kStuffedByte && !fill && !IsRestart(code)) {
        at_ += 2;
        return true;
      }
      ++at_;
    }
    return false;
  }

  ImageFileError ReadData(Segment& segment) {
    if (bytes_.size() - at_ < 2) return kImageFileTruncated;
    const std::size_t length = BigEndian16(bytes_, at_);  // counts its own two bytes
    if (length < 2) return kImageFileForeign;
    if (bytes_.size() - at_ < length) return kImageFileTruncated;
    segment.data = bytes_.subspan(at_ + 2, length - 2);
    at_ += length;
    return kImageFileOk;
  }

  ByteView bytes_;
  std::size_t at_ = 0;
};

ImageFileError CheckSignature(ByteView bytes) {
  if (!bytes.empty() && bytes[0] != 0xff) return kImageFileForeign;
  if (bytes.size() < 2) return kImageFileTruncated;
  return bytes[1] == kStartOfImage ? kImageFileOk : kImageFileForeign;
}

ImageFileError ReadFrame(const Segment& frame, ImageFileInfo& info) {
  constexpr int kMinBits = 2;  // 8 and 12 but for lossless coding
  constexpr int kMaxBits = 16;
  constexpr int kMaxChannels = 4;
  if (frame.data.size() < 6) return kImageFileForeign;
  info.bits_per_channel = frame.data[0];
  info.channels = frame.data[5];
  if (info.bits_per_channel < kMinBits || info.bits_per_channel > kMaxBits)
    return kImageFileForeign;
  if (info.channels < 1 || info.channels > kMaxChannels) return kImageFileForeign;
  return TakeSize(BigEndian16(frame.data, 3), BigEndian16(frame.data, 1), info);
}

/// Whether a file is long enough: pixels come in blocks of at most 32 by 32, a bit each at least.
bool CanHold(std::uint64_t file_size, const ImageFileInfo& info) {
  const auto blocks = [](int side) { return (static_cast<std::uint64_t>(side) + 31) / 32; };
  return blocks(info.width) * blocks(info.height) <= 8 * file_size;
}

ImageFileError ReadInfo(ByteView beginning, std::uint64_t file_size, ImageFileInfo& info) {
  if (const auto error = CheckSignature(beginning)) return error;
  SegmentReader reader(beginning);
  Segment segment;
  do {
    if (const auto error = reader.Next(segment)) return error;
    if (segment.code == kStartOfScan || segment.code == kEndOfImage) return kImageFileForeign;
  } while (!IsStartOfFrame(segment.code));

  if (const auto error = ReadFrame(segment, info)) return error;
  if (info.NumPixels() * static_cast<unsigned>(info.channels) > kMaxCodecBytes)
    return kImageFileTooLarge;
  return CanHold(file_size, info) ? kImageFileOk : kImageFileTruncated;
}

/// Tables of Huffman codes: class and number, how many codes there are of 1 to 16 bits, and what
/// they stand for. The decoder trusts that these are no more values than a byte has.
bool AreWhole(ByteView tables) {
  constexpr std::size_t kHead = 17;
  constexpr std::size_t kMostCodes = 256;
  while (!tables.empty()) {
    if (tables.size() < kHead) return false;
    const std::size_t num_codes =
        std::accumulate(tables.data() + 1, tables.data() + kHead, std::size_t{0});
    if (num_codes > kMostCodes || num_codes > tables.size() - kHead) return false;
    tables = tables.subspan(kHead + num_codes);
  }
  return true;
}

/// Every segment up to the end marker, with at least one scan among them, and tables before it:
/// frames of films leave theirs out, and would come out as plain grey.
ImageFileError CheckComplete(ByteView file) {
  SegmentReader reader(file);
  Segment segment;
  bool has_codes = false;
  bool has_quantisers = false;
  bool has_scan = false;
  do {
    if (const auto error = reader.Next(segment)) return error;
    if (segment.code == kHuffmanTables && !AreWhole(segment.data)) return kImageFileForeign;
    has_codes = has_codes || segment.code == kHuffmanTables;
    has_quantisers = has_quantisers || segment.code == kQuantisers;
    has_scan = has_scan || segment.code == kStartOfScan;
    if (has_scan && !(has_codes && has_quantisers)) return kImageFileForeign;
  } while (segment.code != kEndOfImage);
  return has_scan ? kImageFileOk : kImageFileTruncated;
}

ImageFileError Decode(ByteView file, const ImageFileInfo& info, Bytes& grey) {
  if (const auto error = CheckComplete(file)) return error;
  return DecodeWithStb(file, info, grey);
}

}  // namespace

const ImageFileReader kJpegReader = {ReadInfo, Decode};

ImageFileError EncodeJpeg(const tImage& image, Bytes& file) {
  return EncodeWithStb(image, StbFormat::kJpeg, file);
}

}  // namespace orvandel
