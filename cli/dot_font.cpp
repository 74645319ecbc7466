#include "cli/dot_font.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace orvandel::cli {
namespace {

// One octal digit a row, top row first; its three bits are the dots, left to right. So
// 4 = #.. 2 = .#. 1 = ..# 7 = ###.
struct Glyph {
  char character;
  std::uint16_t rows;
};

constexpr Glyph kGlyphs[] = {
    {'0', 075557}, {'1', 026227}, {'2', 071747}, {'3', 071717}, {'4', 055711}, {'5', 074717},
    {'6', 074757}, {'7', 071122}, {'8', 075757}, {'9', 075717}, {'A', 025755}, {'B', 065656},
    {'C', 034443}, {'D', 065556}, {'E', 074647}, {'F', 074644}, {'G', 034553}, {'H', 055755},
    {'I', 072227}, {'J', 011152}, {'K', 055655}, {'L', 044447}, {'M', 057755}, {'N', 065555},
    {'O', 025552}, {'P', 065644}, {'Q', 025563}, {'R', 065655}, {'S', 034216}, {'T', 072222},
    {'U', 055557}, {'V', 055552}, {'W', 055775}, {'X', 055255}, {'Y', 055222}, {'Z', 071247},
    {'.', 000002}, {',', 000024}, {'-', 000700}, {'+', 002720}, {'%', 051245}, {':', 002020},
    {'/', 011244},
};

char Capital(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool GlyphHasDot(char c, int column, int row) {
  const char capital = Capital(c);
  const auto* const glyph =
      std::find_if(std::begin(kGlyphs), std::end(kGlyphs),
                   [capital](const Glyph& g) { return g.character == capital; });
  if (glyph == std::end(kGlyphs)) return false;
  const int bit = (kGlyphRows - 1 - row) * kGlyphColumns + (kGlyphColumns - 1 - column);
  return ((glyph->rows >> bit) & 1) != 0;
}

}  // namespace orvandel::cli
