#pragma once

#include <string_view>
#include <vector>

#include "base/geometry.h"

namespace orvandel::cli {

/// A character as a pen draws it. Its unit is the height of capitals: x from the character's left,
/// y down from the capitals' top, the base line at 1.
struct Glyph {
  std::vector<std::vector<Point>> strokes;
  double advance = 0;  ///< to the left of the next character
};

/// Capitals, digits, `.,:-+/%=()#_` and the signs of degrees, times and plus-minus. Small letters
/// look like capitals; every other character is blank.
Glyph GlyphOf(char32_t c);

/// The characters of UTF-8 text; bytes that are none become U+FFFD.
std::vector<char32_t> CharactersOf(std::string_view utf8);

}  // namespace orvandel::cli
