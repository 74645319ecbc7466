#pragma once

namespace orvandel::cli {

inline constexpr int kGlyphColumns = 3;
inline constexpr int kGlyphRows = 5;
inline constexpr int kGlyphAdvance = kGlyphColumns + 1;

/// Whether the character has a dot there: capitals, digits and `.,-+%:/`. Small letters look like
/// capitals; every other character is blank.
bool GlyphHasDot(char c, int column, int row);

}  // namespace orvandel::cli
