#include "cli/duration.h"

#include <cmath>
#include <optional>
#include <string>

#include <fmt/format.h>

#include "cli/tool_error.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::ParseNumber;

namespace {

std::optional<double> MicrosecondsPer(std::string_view unit) {
  if (unit == "us" || unit == "\xC2\xB5s") return 1.0;
  if (unit == "ms") return 1e3;
  if (unit == "s") return 1e6;
  return std::nullopt;
}

}  // namespace

int ParseTimeoutUs(std::string_view text, int longest_us) {
  if (text == "0") return 0;
  const std::size_t number_length = text.find_last_of("0123456789.") + 1;  // npos + 1 is 0
  const std::optional<double> number = ParseNumber(text.substr(0, number_length));
  const std::optional<double> unit_us = MicrosecondsPer(text.substr(number_length));
  if (!number || !unit_us)
    throw UsageError(fmt::format(
        "--timeout: '{}' is not a time; give a number and its unit, as in 500us, 20ms or 1.5s",
        text));
  const double timeout_us = std::round(*number * *unit_us);
  if (!(timeout_us >= 0 && timeout_us <= longest_us))
    throw UsageError(fmt::format("--timeout: '{}' is out of range; it goes from 0 to {:g}s", text,
                                 longest_us / 1e6));
  return static_cast<int>(timeout_us);
}

}  // namespace orvandel::cli
