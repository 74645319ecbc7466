#pragma once

#include <optional>

#include "base/geometry.h"
#include "image/image_view.h"
#include "shape/model/shape_model.h"

namespace orvandel::shape {

/// The pattern's edge points at every factor, with no chance levels yet; nothing where the image has no
/// edges. The image is not empty, and the mask is as large as it or empty.
std::optional<ShapeModel> BuildModel(const ImageView& image, const ImageView8& mask,
                                     const std::optional<Point>& origin);

}  // namespace orvandel::shape
