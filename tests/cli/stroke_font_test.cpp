#include "cli/stroke_font.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvandel::cli::test {
namespace {

std::vector<char32_t> AllCharacters() {
  return CharactersOf("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ.,:-+/%=()#_\u00B0\u00D7\u00B1");
}

bool LookAlike(const Glyph& a, const Glyph& b) {
  return a.strokes == b.strokes;
}

TEST(StrokeFont, AnLIsAStemAndAFoot) {
  const Glyph glyph = GlyphOf(U'L');
  ASSERT_EQ(glyph.strokes.size(), 1u);
  const std::vector<Point>& stroke = glyph.strokes[0];
  ASSERT_EQ(stroke.size(), 3u);
  EXPECT_EQ(stroke[0], (Point{0, 0}));
  EXPECT_EQ(stroke[1], (Point{0, 1}));
  EXPECT_EQ(stroke[2].y, 1);
  EXPECT_GT(stroke[2].x, 0.4);
}

TEST(StrokeFont, ARingClosesAndStaysInItsBox) {
  const std::vector<Point> ring = GlyphOf(U'O').strokes.at(0);
  EXPECT_EQ(ring.front(), ring.back());
  EXPECT_GT(ring.size(), 30u);  // round, not a box
  for (const Point p : ring) {
    EXPECT_GE(p.x, 0);
    EXPECT_GE(p.y, 0);
    EXPECT_LE(p.y, 1);
    EXPECT_LE(p.x, GlyphOf(U'O').advance);
  }
}

TEST(StrokeFont, EveryCharacterLooksDifferent) {
  const std::vector<char32_t> characters = AllCharacters();
  for (std::size_t i = 0; i < characters.size(); ++i) {
    EXPECT_FALSE(GlyphOf(characters[i]).strokes.empty()) << i;
    for (std::size_t k = 0; k < i; ++k)
      EXPECT_FALSE(LookAlike(GlyphOf(characters[i]), GlyphOf(characters[k]))) << i << ", " << k;
  }
}

TEST(StrokeFont, DigitsButTheOneAreEquallyWide) {
  for (const char32_t digit : CharactersOf("02356789"))
    EXPECT_NEAR(GlyphOf(digit).advance, GlyphOf(U'0').advance, 0.1);
}

TEST(StrokeFont, CharactersDoNotRunIntoTheNext) {
  for (const char32_t c : AllCharacters()) {
    for (const auto& stroke : GlyphOf(c).strokes) {
      for (const Point p : stroke)
        EXPECT_LT(p.x, GlyphOf(c).advance - 0.2);
    }
  }
}

TEST(StrokeFont, SmallLettersLookLikeCapitals) {
  EXPECT_TRUE(LookAlike(GlyphOf(U'q'), GlyphOf(U'Q')));
}

TEST(StrokeFont, OtherCharactersAreBlankButTakeRoom) {
  for (const char32_t c : {U' ', U'~', U'\u5de5'}) {
    EXPECT_TRUE(GlyphOf(c).strokes.empty());
    EXPECT_GT(GlyphOf(c).advance, 0.2);
  }
}

TEST(StrokeFont, TextIsReadAsUtf8) {
  EXPECT_EQ(CharactersOf("a\u00B0\u5de5\U0001f527"),
            (std::vector<char32_t>{U'a', U'\u00B0', U'\u5de5', U'\U0001f527'}));
  EXPECT_EQ(CharactersOf("\xC3"), (std::vector<char32_t>{0xFFFD}));
  EXPECT_EQ(CharactersOf("\xE5-x"), (std::vector<char32_t>{0xFFFD, U'-', U'x'}));
  EXPECT_EQ(CharactersOf("\xFF\x80"), (std::vector<char32_t>{0xFFFD, 0xFFFD}));
}

}  // namespace
}  // namespace orvandel::cli::test
