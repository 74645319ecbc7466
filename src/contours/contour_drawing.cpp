#include "contours/contour_drawing.h"

#include "base/rounding.h"
#include "base/trigonometry.h"

namespace orvandel {
namespace {

constexpr std::size_t kMarkSpacing = 5;  // points from one direction mark to the next
constexpr int kMarkLength = 9;           // pixels

/// The pixel that holds (x, y).
void Plot(const Drawing& drawing, double x, double y, std::uint8_t grey) {
  drawing.set_pixel(TruncateToInt32(x), TruncateToInt32(y), grey);
}

/// A short line along a point's direction. What is clipped is its place before the displacement.
void DrawMark(const ContourView& contour, std::size_t k, const DrawOptions& options,
              const Drawing& drawing) {
  const auto [sine, cosine] = SinCosOf(contour.g[k]);
  for (int s = 1; s <= kMarkLength; ++s) {
    const double x = contour.x[k] + s * cosine;
    const double y = contour.y[k] - s * sine;
    const bool inside = 0 < x && x < drawing.width && 0 < y && y < drawing.height;
    if (inside) Plot(drawing, x + options.dx, y + options.dy, options.mark_grey);
  }
}

}  // namespace

void DrawContours(const ContourSetView& contours, const DrawOptions& options,
                  const Drawing& drawing) {
  for (std::size_t i = 0; i < contours.NumContours(); ++i) {
    const ContourView contour = contours[i];
    for (std::size_t k = 0; k < contour.Size(); ++k) {
      Plot(drawing, contour.x[k] + options.dx, contour.y[k] + options.dy, options.point_grey);
      if (k % kMarkSpacing == 0 && options.mark_grey != 0) DrawMark(contour, k, options, drawing);
    }
  }
}

}  // namespace orvandel
