#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvandel::evaluation {

// Numbers as text, the same in every locale.

/// The number that the whole text spells with a decimal point, as in "1.5" or "2e3"; nothing for
/// any other text, for blanks around it, and for a number too large for a double.
std::optional<double> ParseNumber(std::string_view text);

/// The whole number that the whole text spells; nothing for any other text or out of range.
std::optional<int> ParseInteger(std::string_view text);

/// A number with so many decimals, never "-0.00"; `missing` for one that is not finite.
std::string Fixed(double value, int decimals, std::string_view missing = "-");

}  // namespace orvandel::evaluation
