#pragma once

#include "contours/contour_set.h"

namespace orvandel {

/// Smooths the positions of every contour of 6 points and more by a five-point mean, in place. Closed
/// contours are smoothed like open ones: their seam keeps its ends.
void SmoothContours(const ContourSetView& contours);

}  // namespace orvandel
