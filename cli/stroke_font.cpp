#include "cli/stroke_font.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace orvandel::cli {
namespace {

// On a grid of 8 columns and 12 rows, columns counted 0 to 8, rows 0 to e (base line c). A stroke
// begins with its kind: L straight from point to point, C a curve that the points pull, O a closed
// one. A bar parts the strokes.
struct Drawing {
  char32_t character;
  const char* strokes;
};

constexpr Drawing kDrawings[] = {
    {U'0', "O004070767c4c0c06"},
    {U'1', "L02303c"},
    {U'2', "C030070760c|L0c7c"},
    {U'3', "C0200707636|C36767c0c0a"},
    {U'4', "L5c500878"},
    {U'5', "L601006|C0624747c0c0a"},
    {U'6', "C6021060c7c751508"},
    {U'7', "L00702c"},
    {U'8', "O10606616|O06767c0c"},
    {U'9', "C1c5b767000076774"},
    {U'A', "L0c408c|L1878"},
    {U'B', "L0c0040|C40707646|L4606|C46868c4c|L4c0c"},
    {U'C', "C83804000060c4c8c89"},
    {U'D', "L0c0030|C3080868c3c|L3c0c"},
    {U'E', "L70000c7c|L0656"},
    {U'F', "L70000c|L0656"},
    {U'G', "C83804000060c4c8c87|L8747"},
    {U'H', "L000c|L808c|L0686"},
    {U'I', "L000c"},
    {U'J', "L6068|C686c0c09"},
    {U'K', "L000c|L8007|L348c"},
    {U'L', "L000c7c"},
    {U'M', "L0c0048808c"},
    {U'N', "L0c008c80"},
    {U'O', "O004080868c4c0c06"},
    {U'P', "L0c0040|C40808747|L4707"},
    {U'Q', "O004080868c4c0c06|L598d"},
    {U'R', "L0c0040|C40808747|L4707|L478c"},
    {U'S', "C82800006868c0c0a"},
    {U'T', "L0080|L404c"},
    {U'U', "L0007|C070c8c87|L8780"},
    {U'V', "L004c80"},
    {U'W', "L002c446c80"},
    {U'X', "L008c|L800c"},
    {U'Y', "L004680|L464c"},
    {U'Z', "L00800c8c"},
    {U'.', "L0c0c"},
    {U',', "L1b0e"},
    {U':', "L0505|L0b0b"},
    {U'-', "L0757"},
    {U'+', "L0767|L343a"},
    {U'/', "L600c"},
    {U'%', "O00303404|O58888c5c|L800c"},
    {U'=', "L0565|L0969"},
    {U'(', "C3003093c"},
    {U')', "C0033390c"},
    {U'#', "L201c|L605c|L0484|L0888"},
    {U'_', "L0d8d"},
    {U'\u00B0', "O00303303"},
    {U'\u00D7', "L046a|L640a"},
    {U'\u00B1', "L0565|L3238|L0b6b"},
};

constexpr double kRows = 12;
constexpr double kGap = 4.0;         // between characters, columns
constexpr double kBlankWidth = 5.0;  // columns

int Digit(char c) {
  return c >= 'a' ? c - 'a' + 10 : c - '0';
}

/// Cuts the corners: a few times make a curve of a polygon.
/// Method: G. M. Chaikin, "An algorithm for high-speed curve generation", Computer Graphics and
/// Image Processing 3(4), 1974.
std::vector<Point> WithCutCorners(const std::vector<Point>& points, bool is_closed) {
  std::vector<Point> cut;
  if (!is_closed) cut.push_back(points.front());
  const std::size_t num_sides = points.size() - (is_closed ? 0 : 1);
  for (std::size_t i = 0; i < num_sides; ++i) {
    const Point from = points[i];
    const Point to = points[(i + 1) % points.size()];
    cut.push_back(0.75 * from + 0.25 * to);
    cut.push_back(0.25 * from + 0.75 * to);
  }
  if (!is_closed) cut.push_back(points.back());
  return cut;
}

std::vector<Point> StrokeOf(std::string_view text) {
  constexpr int kRounds = 3;
  const char kind = text.front();
  std::vector<Point> points;
  for (std::size_t i = 1; i + 1 < text.size(); i += 2)
    points.push_back((1 / kRows) * Point{static_cast<double>(Digit(text[i])),
                                         static_cast<double>(Digit(text[i + 1]))});
  if (kind == 'L') return points;
  for (int round = 0; round < kRounds; ++round)
    points = WithCutCorners(points, kind == 'O');
  if (kind == 'O') points.push_back(points.front());
  return points;
}

char32_t Capital(char32_t c) {
  return c >= U'a' && c <= U'z' ? c - U'a' + U'A' : c;
}

}  // namespace

Glyph GlyphOf(char32_t c) {
  const auto* const drawing =
      std::find_if(std::begin(kDrawings), std::end(kDrawings),
                   [c](const Drawing& d) { return d.character == Capital(c); });
  if (drawing == std::end(kDrawings)) return {{}, kBlankWidth / kRows};
  Glyph glyph;
  double width = 0;
  for (std::string_view rest = drawing->strokes; !rest.empty();) {
    const std::size_t length = std::min(rest.find('|'), rest.size());
    glyph.strokes.push_back(StrokeOf(rest.substr(0, length)));
    for (const Point p : glyph.strokes.back())
      width = std::max(width, p.x);
    rest.remove_prefix(std::min(length + 1, rest.size()));
  }
  glyph.advance = width + kGap / kRows;
  return glyph;
}

std::vector<char32_t> CharactersOf(std::string_view utf8) {
  constexpr char32_t kNone = 0xFFFD;
  std::vector<char32_t> characters;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t c = length == 1 ? lead : lead & (0x7Fu >> length);
    bool is_whole = lead < 0x80 || (lead >= 0xC2 && lead < 0xF5);
    for (std::size_t k = 1; k < length && is_whole; ++k) {
      const auto next = static_cast<unsigned char>(i + k < utf8.size() ? utf8[i + k] : 0);
      is_whole = (next & 0xC0u) == 0x80;
      c = c << 6 | (next & 0x3Fu);
    }
    characters.push_back(is_whole ? c : kNone);
    i += is_whole ? length : 1;
  }
  return characters;
}

}  // namespace orvandel::cli
