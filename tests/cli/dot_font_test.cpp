#include "cli/dot_font.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace orvandel::cli::test {
namespace {

std::string Dots(char c) {
  std::string dots;
  for (int row = 0; row < kGlyphRows; ++row) {
    for (int column = 0; column < kGlyphColumns; ++column)
      dots += GlyphHasDot(c, column, row) ? '#' : '.';
    dots += '\n';
  }
  return dots;
}

TEST(DotFont, AnLIsAColumnAndAFoot) {
  EXPECT_EQ(Dots('L'),
            "#..\n"
            "#..\n"
            "#..\n"
            "#..\n"
            "###\n");
}

TEST(DotFont, ASevenLeansToTheRight) {
  EXPECT_EQ(Dots('7'),
            "###\n"
            "..#\n"
            "..#\n"
            ".#.\n"
            ".#.\n");
}

TEST(DotFont, EveryCharacterLooksDifferent) {
  const std::string characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ.,-+%:/ ";
  std::set<std::string> looks;
  for (const char c : characters)
    EXPECT_TRUE(looks.insert(Dots(c)).second) << c;
}

TEST(DotFont, SmallLettersLookLikeCapitals) {
  EXPECT_EQ(Dots('q'), Dots('Q'));
}

TEST(DotFont, UnknownCharactersAreBlank) {
  EXPECT_EQ(Dots('~'), Dots(' '));
  EXPECT_EQ(Dots('\xC3'), Dots(' '));
}

}  // namespace
}  // namespace orvandel::cli::test
