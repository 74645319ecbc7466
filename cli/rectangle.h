#pragma once

#include <string>
#include <string_view>

namespace orvandel::cli {

/// A part of a picture, whole pixels.
struct Rectangle {
  int x = 0;  ///< first column
  int y = 0;  ///< first row
  int width = 0;
  int height = 0;
};

/// Reads "X,Y,WIDTH,HEIGHT". Throws UsageError for anything else, for a corner left of or above the
/// picture and for a size below 1.
Rectangle ParseRectangle(std::string_view text);

/// Throws UsageError when the rectangle reaches beyond a picture of this size.
void CheckInside(const Rectangle& part, int picture_width, int picture_height,
                 const std::string& picture_path);

}  // namespace orvandel::cli
