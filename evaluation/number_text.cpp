#include "evaluation/number_text.h"

#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>

#include <fmt/format.h>

namespace orvandel::evaluation {

std::optional<double> ParseNumber(std::string_view text) {
  // Streams of some libraries read hexadecimal, "inf" and "nan" as well.
  if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string_view::npos)
    return std::nullopt;
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  double value = 0;
  if (!(stream >> value) || stream.peek() != std::istringstream::traits_type::eof())
    return std::nullopt;
  return value;
}

std::optional<int> ParseInteger(std::string_view text) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || text.empty()) return std::nullopt;
  return value;
}

std::string Fixed(double value, int decimals, std::string_view missing) {
  if (!std::isfinite(value)) return std::string(missing);
  std::string text = fmt::format("{:.{}f}", value, decimals);
  const bool is_zero = text.find_first_not_of("-0.") == std::string::npos;
  if (is_zero && text.front() == '-') text.erase(0, 1);
  return text;
}

}  // namespace orvandel::evaluation
