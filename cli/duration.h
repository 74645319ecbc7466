#pragma once

#include <string_view>

namespace orvandel::cli {

/// Longest time budget that a search takes.
inline constexpr int kMaxTimeoutUs = 3'999'000;

/// Reads a time budget: a number and its unit, us, ms or s, as in "500us", "20ms" or "1.5s"; "0"
/// needs none.
///
/// @return  microseconds, rounded, 0 to `kMaxTimeoutUs`. Anything else throws UsageError.
int ParseTimeoutUs(std::string_view text);

}  // namespace orvandel::cli
