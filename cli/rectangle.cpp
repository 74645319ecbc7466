#include "cli/rectangle.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include <fmt/format.h>

#include "cli/tool_error.h"
#include "evaluation/csv.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::ParseInteger;
using evaluation::SplitAtCommas;

namespace {

std::optional<std::array<int, 4>> FourIntegers(std::string_view text) {
  const std::vector<std::string> fields = SplitAtCommas(text);
  std::array<int, 4> numbers{};
  if (fields.size() != numbers.size()) return std::nullopt;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::optional<int> number = ParseInteger(fields[i]);
    if (!number) return std::nullopt;
    numbers[i] = *number;
  }
  return numbers;
}

}  // namespace

Rectangle ParseRectangle(std::string_view text) {
  const std::optional<std::array<int, 4>> numbers = FourIntegers(text);
  if (!numbers)
    throw UsageError(fmt::format(
        "--pattern-rect: '{}' is not X,Y,WIDTH,HEIGHT in whole pixels, as in 100,80,240,200",
        text));
  const auto [x, y, width, height] = *numbers;
  if (x < 0 || y < 0 || width < 1 || height < 1)
    throw UsageError(fmt::format(
        "--pattern-rect: '{}' holds no pixels; X and Y start at 0, WIDTH and HEIGHT at 1", text));
  return {x, y, width, height};
}

void CheckInside(const Rectangle& part, int image_width, int image_height,
                 const std::string& image_path) {
  const std::int64_t right = std::int64_t{part.x} + part.width;
  const std::int64_t bottom = std::int64_t{part.y} + part.height;
  if (right <= image_width && bottom <= image_height) return;
  throw UsageError(
      fmt::format("--pattern-rect: {},{},{},{} reaches beyond the picture {}, which is {} x {} "
                  "pixels",
                  part.x, part.y, part.width, part.height, image_path, image_width, image_height));
}

}  // namespace orvandel::cli
