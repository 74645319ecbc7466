#include <algorithm>
#include <cstring>
#include <filesystem>
#include <new>
#include <span>

#include "orvandel/classic/imgutil_i.h"
#include "platform/atomic_file.h"
#include "platform/imgutil/image_codec.h"
#include "platform/imgutil/image_format.h"
#include "platform/imgutil/input_file.h"

namespace orvandel {
namespace {

constexpr std::int32_t kGrey8 = 1;

std::filesystem::path PathFromUtf8(const char* path) {
  return std::filesystem::path(reinterpret_cast<const char8_t*>(path));
}

bool IsGreyImage(const tImage* image) {
  return image != nullptr && image->type == kGrey8 && image->row != nullptr && image->width >= 1 &&
         image->height >= 1;
}

/// Most headers stand in the first few bytes; photographs may carry a preview before theirs.
ImageFileError ReadInfo(InputFile& file, const ImageFileReader& reader, ImageFileInfo& info) {
  constexpr std::uint64_t kUsuallyEnough = 1 << 16;
  Bytes bytes;
  if (const auto error = file.ReadBeginning(kUsuallyEnough, bytes)) return error;
  const ImageFileError error = reader.read_info(bytes, file.Size(), info);
  if (error != kImageFileTruncated || file.Size() <= kUsuallyEnough) return error;
  if (const auto read_error = file.ReadBeginning(file.Size(), bytes)) return read_error;
  return reader.read_info(bytes, file.Size(), info);
}

ImageFileError GetSize(const char* path_text, int file_type, ImageFileInfo& info) {
  const auto path = PathFromUtf8(path_text);
  const ImageFileReader* reader = ReaderFor(path, file_type);
  if (reader == nullptr) return kImageFileBadArgument;
  InputFile file(path);
  return file.IsOpen() ? ReadInfo(file, *reader, info) : kImageFileCannotOpen;
}

ImageFileError Decode(InputFile& file, const ImageFileReader& reader, const tImage& image,
                      Bytes& grey) {
  ImageFileInfo info;
  if (const auto error = ReadInfo(file, reader, info)) return error;
  if (info.width != image.width || info.height != image.height) return kImageFileSizeMismatch;
  Bytes bytes;
  if (const auto error = file.ReadBeginning(file.Size(), bytes)) return error;
  // Once more, from the bytes that are decoded: somebody may be writing the file.
  if (const auto error = reader.read_info(bytes, bytes.size(), info)) return error;
  if (info.width != image.width || info.height != image.height) return kImageFileSizeMismatch;
  return reader.decode(bytes, info, grey);
}

ImageFileError Read(const tImage& image, const char* path_text, int file_type) {
  const auto path = PathFromUtf8(path_text);
  const ImageFileReader* reader = ReaderFor(path, file_type);
  if (reader == nullptr) return kImageFileBadArgument;
  InputFile file(path);
  if (!file.IsOpen()) return kImageFileCannotOpen;

  Bytes grey;
  if (const auto error = Decode(file, *reader, image, grey)) return error;
  const auto width = static_cast<std::size_t>(image.width);
  for (int y = 0; y < image.height; ++y)
    std::memcpy(image.row[y], grey.data() + width * static_cast<std::size_t>(y), width);
  return kImageFileOk;
}

ImageFileError Write(const tImage& image, const char* path_text, int file_type) {
  const auto path = PathFromUtf8(path_text);
  const ImageFileWriter encode = WriterFor(path, file_type);
  if (encode == nullptr) return kImageFileBadArgument;
  if (std::max(image.width, image.height) > kMaxImageFileSide) return kImageFileTooLarge;

  Bytes bytes;
  if (const auto error = encode(image, bytes)) return error;
  return WriteFileAtomically(path, std::as_bytes(std::span(bytes))) ? kImageFileCannotWrite
                                                                    : kImageFileOk;
}

/// Runs a file operation; no exception crosses the library's border. What is left besides memory is
/// a path that is no valid text.
template <typename Operation>
ImageFileError WithoutExceptions(Operation operation, ImageFileError otherwise) {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return kImageFileOutOfMemory;
  } catch (...) {
    return otherwise;
  }
}

void Store(int value, int* result) {
  if (result != nullptr) *result = value;
}

}  // namespace
}  // namespace orvandel

int im_file_read(tImage* image, const char* path, int file_type) {
  using namespace orvandel;
  if (!IsGreyImage(image) || path == nullptr) return kImageFileBadArgument;
  return WithoutExceptions([&] { return Read(*image, path, file_type); }, kImageFileCannotOpen);
}

int im_file_write(const tImage* image, const char* path, int file_type) {
  using namespace orvandel;
  if (!IsGreyImage(image) || path == nullptr) return kImageFileBadArgument;
  return WithoutExceptions([&] { return Write(*image, path, file_type); }, kImageFileCannotWrite);
}

int im_file_get_size(const char* path, int file_type, int* width, int* height, int* third,
                     int* fourth) {
  using namespace orvandel;
  if (path == nullptr) return kImageFileBadArgument;
  ImageFileInfo info;
  const ImageFileError error =
      WithoutExceptions([&] { return GetSize(path, file_type, info); }, kImageFileCannotOpen);
  if (error != kImageFileOk) return error;
  Store(info.width, width);
  Store(info.height, height);
  Store(info.channels, third);
  Store(info.bits_per_channel, fourth);
  return 0;
}
