#pragma once

#include <cstdint>

#include "contours/contour_set.h"
#include "platform/grey_rows.h"

namespace orvandel {

struct DrawOptions {
  double dx = 0.0;  ///< displacement of every point, pixels
  double dy = 0.0;
  std::uint8_t point_grey = 250;
  /// Grey value of a 9-pixel mark along the gradient direction at every fifth point; 0 for no marks.
  std::uint8_t mark_grey = 0;
};

/// Draws the points of contours over an image; what lies outside is left out.
void DrawContours(const ContourSetView& contours, const DrawOptions& options,
                  const GreyRows& image);

}  // namespace orvandel
