#include "evaluation/image_file.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>

#include "evaluation/deep_image.h"
#include "evaluation/file_error.h"
#include "evaluation/paths.h"

namespace orvandel::evaluation {
namespace {

constexpr int kGrey8 = 1;            // tImage::type
constexpr int kTypeByExtension = 0;  // file type of the image library

std::string WhyNotOpened(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(PathFromUtf8(path), error);
  if (!std::filesystem::exists(status)) return "no such file";
  if (std::filesystem::is_directory(status)) return "this is a folder, not a picture";
  return "cannot be opened; are you allowed to read it?";
}

std::string WhyNotRead(const std::string& path, int error) {
  switch (error) {
    case kImageFileCannotOpen:
      return WhyNotOpened(path);
    case kImageFileForeign:
      return "not a picture of the kind that its name says; BMP, PNG, JPEG, PGM and PPM of at "
             "least one pixel are read, told by the ending of the name";
    case kImageFileTruncated:
      return "the picture is cut off: the file ends before its last pixel";
    case kImageFileSizeMismatch:
      return "the file changed while it was read";
    case kImageFileOutOfMemory:
      return "not enough memory for this picture";
    case kImageFileTooLarge:
      return fmt::format("the picture is too large; 1 to {} pixels are read each way",
                         kMaxImageSide);
    default:
      return fmt::format("cannot be read as a picture (error {})", error);
  }
}

void CheckSize(const std::string& path, int width, int height) {
  const auto [smaller, larger] = std::minmax(width, height);
  if (smaller >= 1 && larger <= kMaxImageSide) return;
  throw FileError(path, fmt::format("the picture is {} x {} pixels; 1 to {} are read each way",
                                    width, height, kMaxImageSide));
}

}  // namespace

ImageFile ReadImage(const std::string& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(PathFromUtf8(path), ignored))
    throw FileError(path, WhyNotRead(path, kImageFileCannotOpen));
  int width = 0;
  int height = 0;
  ImageFile file;
  file.path = path;
  if (const int error = im_file_get_size(path.c_str(), kTypeByExtension, &width, &height,
                                         &file.channels, &file.bits_per_channel))
    throw FileError(path, WhyNotRead(path, error));
  CheckSize(path, width, height);
  file.image = NewImage(path, width, height);
  if (const int error = im_file_read(file.image.get(), path.c_str(), kTypeByExtension))
    throw FileError(path, WhyNotRead(path, error));
  if (file.channels == 1 && file.bits_per_channel == 16)
    file.grey16 = ReadGrey16(path, width, height);
  return file;
}

ImagePtr NewImage(const std::string& path, int width, int height) {
  ImagePtr image(im_create(kGrey8, width, height));
  if (!image)
    throw FileError(path, fmt::format("not enough memory for {} x {} pixels", width, height));
  return image;
}

ImagePtr CopyOf(const ImageFile& file) {
  ImagePtr copy(im_duplicate(file.image.get()));
  if (!copy) throw FileError(file.path, "not enough memory for a copy of this picture");
  return copy;
}

}  // namespace orvandel::evaluation
