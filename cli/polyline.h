#pragma once

#include <vector>

#include "base/geometry.h"

namespace orvandel::cli {

/// A contour or a stroke, to be drawn or listed.
struct Polyline {
  std::vector<Point> points;
  bool is_closed = false;
};

}  // namespace orvandel::cli
