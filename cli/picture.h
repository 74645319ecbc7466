#pragma once

#include <string>

#include "cli/rectangle.h"
#include "platform/image_ptr.h"

namespace orvandel::cli {

/// A picture file, as 8-bit grey.
struct Picture {
  std::string path;
  ImagePtr image;
  int channels = 1;  ///< in the file: 1 grey, 2 grey and alpha, 3 colour, 4 colour and alpha
  int bits_per_channel = 8;  ///< in the file

  bool WasConverted() const { return channels != 1 || bits_per_channel > 8; }
};

/// Largest picture that contours are found in, pixels each way.
inline constexpr int kMaxPictureSide = 65535;

/// Reads a picture of 1 to 65535 pixels each way. Throws FileError when there is none in the file.
Picture ReadPicture(const std::string& path);

/// A copy of the pixels; training and searching use up the image that they are given. Throws
/// FileError when there is no memory for it.
ImagePtr CopyOf(const Picture& picture);

/// The part of a picture as a picture of its own. Throws UsageError when it reaches beyond it.
Picture CutOut(const Picture& picture, const Rectangle& part);

/// Says on standard error how the file became 8-bit grey, if it was anything else.
void NoteConversion(const Picture& picture);

}  // namespace orvandel::cli
