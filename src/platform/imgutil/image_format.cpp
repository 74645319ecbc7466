#include "platform/imgutil/image_format.h"

#include <string>
#include <string_view>

#include "platform/imgutil/bmp.h"
#include "platform/imgutil/jpeg.h"
#include "platform/imgutil/png.h"
#include "platform/imgutil/pnm.h"
#include "platform/imgutil/tga.h"

namespace orvandel {
namespace {

struct Format {
  std::u8string_view extension;
  const ImageFileReader* reader;
  ImageFileWriter writer;
};

const Format kBmp = {u8".bmp", &kBmpReader, EncodeBmp};

// A grey image is a grey map under every name of the family. Truevision files are written only;
// anything that is not listed is a bitmap.
const Format kFormats[] = {
    {u8".png", &kPngReader, EncodePng},    {u8".jpg", &kJpegReader, EncodeJpeg},
    {u8".jpeg", &kJpegReader, EncodeJpeg}, {u8".pgm", &kPnmReader, EncodePgm},
    {u8".ppm", &kPnmReader, EncodePgm},    {u8".pnm", &kPnmReader, EncodePgm},
    {u8".tga", &kBmpReader, EncodeTga},
};

std::u8string LowerCaseExtension(const std::filesystem::path& path) {
  std::u8string extension = path.extension().u8string();
  for (char8_t& c : extension) {
    if (c >= u8'A' && c <= u8'Z') c = static_cast<char8_t>(c - u8'A' + u8'a');
  }
  return extension;
}

const Format* FormatFor(const std::filesystem::path& path, int file_type) {
  if (file_type == kFileTypeBmp) return &kBmp;
  if (file_type != kFileTypeByExtension) return nullptr;
  const std::u8string extension = LowerCaseExtension(path);
  for (const Format& format : kFormats) {
    if (format.extension == extension) return &format;
  }
  return &kBmp;
}

}  // namespace

const ImageFileReader* ReaderFor(const std::filesystem::path& path, int file_type) {
  const Format* format = FormatFor(path, file_type);
  return format == nullptr ? nullptr : format->reader;
}

ImageFileWriter WriterFor(const std::filesystem::path& path, int file_type) {
  const Format* format = FormatFor(path, file_type);
  return format == nullptr ? nullptr : format->writer;
}

}  // namespace orvandel
