#pragma once

namespace orvandel::shape {

/// Of a pattern's points, the share that a scene must show: whoever sees fewer cannot tell a part from clutter.
/// A rank and a score count what is missing to it as not matched.
inline constexpr double kLeastVisible = 0.4;

}  // namespace orvandel::shape
