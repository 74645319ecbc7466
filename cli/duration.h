#pragma once

#include <string_view>

namespace orvandel::cli {

// Longest time budgets that a search takes.
inline constexpr int kMaxSegmentTimeoutUs = 3'999'000;
inline constexpr int kMaxShapeTimeoutUs = 1'000'000'000;

/// Reads a time budget: a number and its unit, us, ms or s, as in "500us", "20ms" or "1.5s"; "0"
/// needs none.
///
/// @return  microseconds, rounded, 0 to `longest_us`. Anything else throws UsageError.
int ParseTimeoutUs(std::string_view text, int longest_us);

}  // namespace orvandel::cli
