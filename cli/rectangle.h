#pragma once

#include <string>
#include <string_view>

namespace orvandel::cli {

/// A part of an image, whole pixels.
struct Rectangle {
  int x = 0;  ///< first column
  int y = 0;  ///< first row
  int width = 0;
  int height = 0;
};

/// Reads "X,Y,WIDTH,HEIGHT". Throws UsageError for anything else, for a corner left of or above the
/// image and for a size below 1.
Rectangle ParseRectangle(std::string_view text);

/// Throws UsageError when the rectangle reaches beyond an image of this size.
void CheckInside(const Rectangle& part, int image_width, int image_height,
                 const std::string& image_path);

}  // namespace orvandel::cli
