#include "platform/imgutil/pnm.h"

#include <cstddef>
#include <optional>
#include <string>

#include "platform/imgutil/byte_order.h"
#include "platform/imgutil/grey.h"

namespace orvandel {
namespace {

constexpr int kLargestMaximum = 65535;

bool IsSpace(std::uint8_t c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(std::uint8_t c) {
  return c >= '0' && c <= '9';
}

/// Reads decimal numbers out of text with white space and comments between them.
class NumberReader {
 public:
  NumberReader(ByteView bytes, std::size_t at) : bytes_(bytes), at_(at) {}

  std::size_t Position() const { return at_; }
  bool AtEnd() const { return at_ == bytes_.size(); }

  /// The next number, or nothing where something else stands or the text ends. A number above 10^8
  /// is returned as some number above 10^8.
  std::optional<int> Next() {
    SkipBlanks();
    if (AtEnd() || !IsDigit(bytes_[at_])) return std::nullopt;
    int number = 0;
    for (; !AtEnd() && IsDigit(bytes_[at_]); ++at_) {
      if (number <= 100'000'000) number = 10 * number + (bytes_[at_] - '0');
    }
    return number;
  }

 private:
  void SkipBlanks() {
    bool in_comment = false;
    for (; !AtEnd(); ++at_) {
      const std::uint8_t c = bytes_[at_];
      if (in_comment) {
        in_comment = c != '\n' && c != '\r';
      } else if (c == '#') {
        in_comment = true;
      } else if (!IsSpace(c)) {
        return;
      }
    }
  }

  ByteView bytes_;
  std::size_t at_;
};

struct Layout {
  ImageFileInfo info;
  bool plain = false;  // samples as decimal text
  int maximum = 0;     // the sample that means white
  std::size_t samples_at = 0;

  std::uint64_t NumSamples() const {
    return info.NumPixels() * static_cast<unsigned>(info.channels);
  }
  std::uint64_t BytesPerSample() const { return maximum > 255 ? 2 : 1; }

  /// A plain sample is a digit and, but for the last, a blank.
  std::uint64_t FewestSampleBytes() const {
    return plain ? 2 * NumSamples() - 1 : BytesPerSample() * NumSamples();
  }
};

ImageFileError ReadKind(ByteView bytes, Layout& layout) {
  if (bytes.empty()) return kImageFileTruncated;
  if (bytes[0] != 'P') return kImageFileForeign;
  if (bytes.size() < 2) return kImageFileTruncated;
  const std::uint8_t kind = bytes[1];
  if (kind != '2' && kind != '3' && kind != '5' && kind != '6') return kImageFileForeign;
  if (bytes.size() < 3) return kImageFileTruncated;
  if (!IsSpace(bytes[2]) && bytes[2] != '#') return kImageFileForeign;
  layout.plain = kind == '2' || kind == '3';
  layout.info.channels = kind == '2' || kind == '5' ? 1 : 3;
  return kImageFileOk;
}

/// Width, height and greatest sample, then one white space character. A number that ends with the
/// bytes may have lost digits.
ImageFileError ReadNumbers(ByteView bytes, Layout& layout) {
  NumberReader reader(bytes, 2);
  int numbers[3];
  for (int& number : numbers) {
    const std::optional<int> next = reader.Next();
    if (reader.AtEnd()) return kImageFileTruncated;
    if (!next) return kImageFileForeign;
    number = *next;
  }
  if (!IsSpace(bytes[reader.Position()])) return kImageFileForeign;
  layout.samples_at = reader.Position() + 1;
  layout.maximum = numbers[2];
  if (layout.maximum < 1 || layout.maximum > kLargestMaximum) return kImageFileForeign;
  layout.info.bits_per_channel = layout.maximum > 255 ? 16 : 8;
  return TakeSize(numbers[0], numbers[1], layout.info);
}

ImageFileError ReadLayout(ByteView bytes, std::uint64_t file_size, Layout& layout) {
  if (const auto error = ReadKind(bytes, layout)) return error;
  if (const auto error = ReadNumbers(bytes, layout)) return error;
  const std::uint64_t end = layout.samples_at + layout.FewestSampleBytes();
  return end > file_size ? kImageFileTruncated : kImageFileOk;
}

/// Reads samples in file order; nothing where the text ends or holds something else.
class SampleReader {
 public:
  SampleReader(ByteView file, const Layout& layout)
      : file_(file), layout_(layout), text_(file, layout.samples_at), at_(layout.samples_at) {}

  std::optional<int> Next() {
    if (layout_.plain) return text_.Next();
    const std::size_t at = at_;
    at_ += static_cast<std::size_t>(layout_.BytesPerSample());
    return layout_.BytesPerSample() == 1 ? file_[at] : BigEndian16(file_, at);
  }
  bool AtEnd() const { return text_.AtEnd(); }

 private:
  ByteView file_;
  const Layout& layout_;
  NumberReader text_;
  std::size_t at_;
};

ImageFileError DecodePixel(SampleReader& reader, const Layout& layout, std::uint8_t& grey) {
  std::uint8_t samples[3] = {};
  for (int channel = 0; channel < layout.info.channels; ++channel) {
    const std::optional<int> sample = reader.Next();
    if (!sample) return reader.AtEnd() ? kImageFileTruncated : kImageFileForeign;
    if (*sample > layout.maximum) return kImageFileForeign;
    samples[channel] =
        static_cast<std::uint8_t>((*sample * 255 + layout.maximum / 2) / layout.maximum);
  }
  ToGrey(samples, layout.info.channels, 1, &grey);
  return kImageFileOk;
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
  SampleReader reader(file, layout);
  for (std::uint8_t& pixel : grey) {
    if (const auto error = DecodePixel(reader, layout, pixel)) return error;
  }
  return kImageFileOk;
}

}  // namespace

const ImageFileReader kPnmReader = {ReadInfo, Decode};

ImageFileError EncodePgm(const tImage& image, Bytes& file) {
  const std::string header =
      "P5\n" + std::to_string(image.width) + " " + std::to_string(image.height) + "\n255\n";
  file.assign(header.begin(), header.end());
  AppendPixels(image, file);
  return kImageFileOk;
}

}  // namespace orvandel
