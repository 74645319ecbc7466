#pragma once

#include <memory>

#include "orvandel/classic/imgutil_i.h"

namespace orvandel {

struct ImageDeleter {
  void operator()(tImage* image) const { im_delete(image); }
};

/// An image of the image library that releases itself.
using ImagePtr = std::unique_ptr<tImage, ImageDeleter>;

}  // namespace orvandel
