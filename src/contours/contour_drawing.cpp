#include "contours/contour_drawing.h"

#include "base/rounding.h"
#include "base/trigonometry.h"

namespace orvandel {
namespace {

constexpr std::size_t kMarkSpacing = 5;  // points from one direction mark to the next
constexpr int kMarkLength = 9;           // pixels

/// The pixel that holds (x, y).
void Plot(const GreyRows& image, double x, double y, std::uint8_t value) {
  const std::int32_t column = TruncateToInt32(x);
  const std::int32_t row = TruncateToInt32(y);
  const bool inside = column >= 0 && column < image.width && row >= 0 && row < image.height;
  if (inside) image.rows[row][column] = value;
}

/// A short line along a point's direction. What is clipped is its place before the displacement.
void DrawMark(const ContourView& contour, std::size_t k, const DrawOptions& options,
              const GreyRows& image) {
  const auto [sine, cosine] = SinCosOf(contour.g[k]);
  for (int s = 1; s <= kMarkLength; ++s) {
    const double x = contour.x[k] + s * cosine;
    const double y = contour.y[k] - s * sine;
    const bool inside = 0 < x && x < image.width && 0 < y && y < image.height;
    if (inside) Plot(image, x + options.dx, y + options.dy, options.mark_grey);
  }
}

}  // namespace

void DrawContours(const ContourSetView& contours, const DrawOptions& options,
                  const GreyRows& image) {
  for (std::size_t i = 0; i < contours.NumContours(); ++i) {
    const ContourView contour = contours[i];
    for (std::size_t k = 0; k < contour.Size(); ++k) {
      Plot(image, contour.x[k] + options.dx, contour.y[k] + options.dy, options.point_grey);
      if (k % kMarkSpacing == 0 && options.mark_grey != 0) DrawMark(contour, k, options, image);
    }
  }
}

}  // namespace orvandel
