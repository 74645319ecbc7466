#pragma once

#include <cstdint>
#include <functional>

#include "contours/contour_set.h"

namespace orvandel {

struct DrawOptions {
  double dx = 0.0;  ///< displacement of every point, pixels
  double dy = 0.0;
  std::uint8_t point_grey = 250;
  /// Grey value of a 9-pixel mark along the gradient direction at every fifth point; 0 for no marks.
  std::uint8_t mark_grey = 0;
};

/// What is drawn on.
struct Drawing {
  int width = 0;   ///< pixels
  int height = 0;  ///< pixels
  /// Sets a pixel; passes over one outside.
  std::function<void(int column, int row, std::uint8_t grey)> set_pixel;
};

/// Draws the points of contours.
void DrawContours(const ContourSetView& contours, const DrawOptions& options,
                  const Drawing& drawing);

}  // namespace orvandel
