#pragma once

#include <vector>

#include "examples/render/shape.h"

namespace orvandel::render {

/// Width and height of an image, pixels.
struct Size {
  int width = 640;
  int height = 480;
};

/// The share of each pixel's area that a shape covers, over the part of the image that the shape
/// can reach.
struct Coverage {
  int left = 0;  ///< column of the first share
  int top = 0;   ///< row of the first share
  int width = 0;
  int height = 0;
  std::vector<double> share;  ///< row by row, 0 to 1 up to rounding

  double At(int column, int row) const;  ///< by image pixel; 0 outside
  double Total() const;                  ///< covered area, pixels
};

/// Measures a shape's coverage exactly: no sampling, so an edge has no steps at any angle.
///
/// Method: each edge adds the trapezoid between itself and the right border of its pixel rows, with
/// the sign of its direction; in a closed outline what lies outside cancels. The trapezoids are
/// stored as differences along the row, so the cost is the outline's length, not the area.
Coverage CoverShape(const Shape& shape, const Pose& image_from_part, Size image);

}  // namespace orvandel::render
