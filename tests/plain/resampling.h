#pragma once

namespace orvandel::plain {

/// As `ctd_resample`: one contour after the other, each point where it is found.
///
/// @param set  a `ctd_` handle.
/// @throws std::bad_alloc
void Resample(void* set);

}  // namespace orvandel::plain
