#pragma once

namespace orvandel::plain {

/// As `ctd_resample`: points `step` apart, one piece after another into arrays that grow.
/// @throws std::bad_alloc
void ResampleContours(void* contours);

}  // namespace orvandel::plain
