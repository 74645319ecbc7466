#pragma once

namespace orvandel::plain {

/// As `ctd_average`: a running five-point mean over the positions of each contour, in place.
void SmoothContours(void* contours);

}  // namespace orvandel::plain
