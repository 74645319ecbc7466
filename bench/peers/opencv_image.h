#pragma once

#include <cstddef>

#include <opencv2/core.hpp>

#include "platform/image_ptr.h"

namespace orvandel::bench {

/// The pixels of an image of the image library, not copied; only to be read.
inline cv::Mat MatOf(const tImage& image) {
  // Its rows lie at equal distances.
  const std::size_t row_bytes = image.height > 1
                                    ? static_cast<std::size_t>(image.row[1] - image.row[0])
                                    : static_cast<std::size_t>(image.width);
  return {image.height, image.width, CV_8UC1, image.row[0], row_bytes};
}

}  // namespace orvandel::bench
