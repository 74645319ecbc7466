#include "cli/picture.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "cli/messages.h"
#include "cli/paths.h"
#include "cli/tool_error.h"

namespace orvandel::cli {
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
                         kMaxPictureSide);
    default:
      return fmt::format("cannot be read as a picture (error {})", error);
  }
}

void CheckSize(const std::string& path, int width, int height) {
  const auto [smaller, larger] = std::minmax(width, height);
  if (smaller >= 1 && larger <= kMaxPictureSide) return;
  throw FileError(path, fmt::format("the picture is {} x {} pixels; 1 to {} are read each way",
                                    width, height, kMaxPictureSide));
}

ImagePtr NewImage(const std::string& path, int width, int height) {
  ImagePtr image(im_create(kGrey8, width, height));
  if (!image)
    throw FileError(path, fmt::format("not enough memory for {} x {} pixels", width, height));
  return image;
}

}  // namespace

Picture ReadPicture(const std::string& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(PathFromUtf8(path), ignored))
    throw FileError(path, WhyNotRead(path, kImageFileCannotOpen));
  int width = 0;
  int height = 0;
  Picture picture;
  picture.path = path;
  if (const int error = im_file_get_size(path.c_str(), kTypeByExtension, &width, &height,
                                         &picture.channels, &picture.bits_per_channel))
    throw FileError(path, WhyNotRead(path, error));
  CheckSize(path, width, height);
  picture.image = NewImage(path, width, height);
  if (const int error = im_file_read(picture.image.get(), path.c_str(), kTypeByExtension))
    throw FileError(path, WhyNotRead(path, error));
  return picture;
}

ImagePtr CopyOf(const Picture& picture) {
  ImagePtr copy(im_duplicate(picture.image.get()));
  if (!copy) throw FileError(picture.path, "not enough memory for a copy of this picture");
  return copy;
}

Picture CutOut(const Picture& picture, const Rectangle& part) {
  CheckInside(part, picture.image->width, picture.image->height, picture.path);
  Picture cut_out;
  cut_out.path = picture.path;
  cut_out.channels = picture.channels;
  cut_out.bits_per_channel = picture.bits_per_channel;
  cut_out.image = NewImage(picture.path, part.width, part.height);
  for (int y = 0; y < part.height; ++y)
    std::copy_n(picture.image->row[part.y + y] + part.x, part.width, cut_out.image->row[y]);
  return cut_out;
}

void NoteConversion(const Picture& picture) {
  if (!picture.WasConverted()) return;
  const std::string_view kind = picture.channels >= 3   ? "colour picture"
                                : picture.channels == 2 ? "grey picture with transparency"
                                                        : "grey picture";
  PrintNote(fmt::format("{}: {} of {} bits a channel, converted to 8-bit grey", picture.path, kind,
                        picture.bits_per_channel));
}

}  // namespace orvandel::cli
