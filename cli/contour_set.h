#pragma once

#include <memory>
#include <vector>

#include "base/geometry.h"
#include "cli/image_input.h"
#include "cli/search_options.h"
#include "orvandel/classic/ctd.h"

namespace orvandel::cli {

struct ContourSetDeleter {
  void operator()(void* handle) const { ctd_delete(handle); }
};
/// A `ctd_` handle that releases itself; `get()` is the handle.
using ContourSet = std::unique_ptr<void, ContourSetDeleter>;

/// The contours of a picture.
///
/// @param raw  as they are followed, instead of smoothed, evenly spaced and largest first as
///             training and search use them.
ContourSet FindContours(const ImageFile& picture, const ContourOptions& options, bool raw);

/// The points of one contour of a `ctd_` handle, in order.
std::vector<Point> ContourPoints(void* contours, int i);

}  // namespace orvandel::cli
