#pragma once

#include <memory>

#include "orvandel/classic/imgutil_i.h"
#include "platform/grey_rows.h"

namespace orvandel {

struct ImageDeleter {
  void operator()(tImage* image) const { im_delete(image); }
};

/// An image of the image library that releases itself.
using ImagePtr = std::unique_ptr<tImage, ImageDeleter>;

/// The pixels of an image, which keeps them.
inline GreyRows RowsOf(const tImage& image) {
  return {image.row, image.width, image.height};
}

}  // namespace orvandel
