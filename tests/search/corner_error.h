#pragma once

#include <cmath>

#include "examples/render/scene.h"
#include "orvandel/classic/qrsis.h"
#include "tests/search/search_results.h"

namespace orvandel::test {

// Rendered truth has the centre of the first pixel at (0, 0), the library near
// (0.5, 0.5).
inline constexpr double kPixelCentre = 0.5;

/// Where a found pose lays a pattern position, in the renderer's coordinates.
inline Point PlacedAt(const Found& found, Point reference, Point position) {
  const double dx = position.x + kPixelCentre - reference.x;
  const double dy = position.y + kPixelCentre - reference.y;
  const double c = std::cos(found.angle);
  const double s = std::sin(found.angle);
  return {found.x + found.scale * (c * dx - s * dy) - kPixelCentre,
          found.y + found.scale * (s * dx + c * dy) - kPixelCentre};
}

/// Mean distance of the pattern image's four corners, as a found pose lays
/// them, from where the truth has them. Pixels.
inline double CornerError(QRSIS& search, const Found& found, render::Size pattern,
                          const render::Pose& scene_from_part) {
  Point reference;
  search.GetPatternRef(&reference.x, &reference.y);
  const Point middle{(pattern.width - 1) / 2.0, (pattern.height - 1) / 2.0};
  double sum = 0;
  for (const double x : {0.0, pattern.width - 1.0}) {
    for (const double y : {0.0, pattern.height - 1.0}) {
      const Point corner{x, y};
      const Point truth = scene_from_part * (corner - middle);
      sum += render::Length(PlacedAt(found, reference, corner) - truth);
    }
  }
  return sum / 4;
}

}  // namespace orvandel::test
