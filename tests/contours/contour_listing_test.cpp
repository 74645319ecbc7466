#include <clocale>
#include <cmath>
#include <filesystem>
#include <locale>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::test {
namespace {

std::string Listing(const ContourHandle& set) {
  const ScratchFolder folder;
  const std::string path = folder.File("listing.txt");
  EXPECT_EQ(ctd_dump(set.get(), path.c_str()), 0);
  std::string text = Contents(path);
#if defined(_WIN32)
  std::erase(text, '\r');
#endif
  return text;
}

TEST(ContourListing, OneContourOfOnePoint) {
  EXPECT_EQ(Listing(MakeSet({{{{1.5, 2.25, 0, 0}}, false}})),
            "Contours: 1; Total of points: 1\n"
            "Contour: 0\n"
            "Contour points: 1\n"
            "1.500000,2.250000,0.000000, 0 \n"
            "\n");
}

TEST(ContourListing, AnEmptySetIsItsHeader) {
  EXPECT_EQ(Listing(MakeEmptySet()), "Contours: 0; Total of points: 0\n");
}

TEST(ContourListing, LinesEndAsThoseOfTextFilesDoHere) {
#if defined(_WIN32)
  const std::string line_end = "\r\n";
#else
  const std::string line_end = "\n";
#endif
  const ScratchFolder folder;
  const std::string path = folder.File("listing.txt");
  EXPECT_EQ(ctd_dump(MakeEmptySet().get(), path.c_str()), 0);
  EXPECT_EQ(Contents(path), "Contours: 0; Total of points: 0" + line_end);
}

TEST(ContourListing, ContoursComeInTableOrder) {
  const ContourHandle set =
      MakeSet({{{{0.125, -3, 0.5, 1}}, false}, {{{100, 200, -1.5, 0}, {1e6, 0, 0, 7}}, true}});
  ctd_sort(set.get(), 1);
  EXPECT_EQ(Listing(set),
            "Contours: 2; Total of points: 3\n"
            "Contour: 0\n"
            "Contour points: 2\n"
            "100.000000,200.000000,-1.500000, 0 \n"
            "1000000.000000,0.000000,0.000000, 7 \n"
            "\n"
            "Contour: 1\n"
            "Contour points: 1\n"
            "0.125000,-3.000000,0.500000, 1 \n"
            "\n");
}

TEST(ContourListing, AContourWithoutPointsHasOnlyItsHead) {
  EXPECT_EQ(Listing(MakeSet({TestContour{}, {{{1, 2, 3, 4}}, false}})),
            "Contours: 2; Total of points: 1\n"
            "Contour: 0\n"
            "Contour points: 0\n"
            "\n"
            "Contour: 1\n"
            "Contour points: 1\n"
            "1.000000,2.000000,3.000000, 4 \n"
            "\n");
}

TEST(ContourListing, FlagsAreSigned) {
  EXPECT_EQ(Listing(MakeSet({{{{0, 0, 0, 0xFFFFFFFFu}, {0, 0, 0, 0x80000000u}}, false}})),
            "Contours: 1; Total of points: 2\n"
            "Contour: 0\n"
            "Contour points: 2\n"
            "0.000000,0.000000,0.000000, -1 \n"
            "0.000000,0.000000,0.000000, -2147483648 \n"
            "\n");
}

TEST(ContourListing, SixDecimalsAreRounded) {
  EXPECT_EQ(
      Listing(MakeSet({{{{2.0 / 3, -2.0 / 3, 1.0000004, 0}, {1e-7, -1e-7, 1e15, 0}}, false}})),
      "Contours: 1; Total of points: 2\n"
      "Contour: 0\n"
      "Contour points: 2\n"
      "0.666667,-0.666667,1.000000, 0 \n"
      "0.000000,-0.000000,1000000000000000.000000, 0 \n"
      "\n");
}

TEST(ContourListing, TheLargestNumberIsWrittenOut) {
  // 2 to the 1000th has 302 digits and ends in ...376.
  const std::string text = Listing(MakeSet({{{{std::ldexp(1.0, 1000), 0, 0, 0}}, false}}));
  const std::size_t end = text.find(".000000,0.000000,0.000000, 0 \n");
  ASSERT_NE(end, std::string::npos);
  const std::size_t start = text.rfind('\n', end) + 1;
  EXPECT_EQ(end - start, 302u);
  EXPECT_EQ(text.substr(start, 12), "107150860718");
  EXPECT_EQ(text.substr(end - 3, 3), "376");
}

TEST(ContourListing, WhereNoFileCanBeGives9) {
  const ScratchFolder folder;
  EXPECT_EQ(ctd_dump(MakeEmptySet().get(), folder.File("no/such/folder.txt").c_str()), 9);
  EXPECT_EQ(ctd_dump(MakeEmptySet().get(), folder.Path().string().c_str()), 9);
}

/// 1 contour of 1500 points at (1234.5, 0): large enough for thousands to be grouped.
ContourHandle LargeNumbers() {
  TestContour contour;
  contour.points.resize(1500, {1234.5, 0, 0, 1234567});
  return MakeSet({contour});
}

void ExpectPlainNumbers(const std::string& text) {
  EXPECT_EQ(text.substr(0, text.find("1234.5", 0)),
            "Contours: 1; Total of points: 1500\nContour: 0\nContour points: 1500\n");
  EXPECT_NE(text.find("1234.500000,0.000000,0.000000, 1234567 \n"), std::string::npos);
}

struct CommasAndGroups : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '\''; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(ContourListing, TheGlobalCppLocaleDoesNotMatter) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new CommasAndGroups));
  const std::string text = Listing(LargeNumbers());
  std::locale::global(before);
  ExpectPlainNumbers(text);
}

TEST(ContourListing, TheCLocaleDoesNotMatter) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const char* found = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE", "fr_FR",
                           "German_Germany.1252", "German"}) {
    found = std::setlocale(LC_ALL, name);
    if (found != nullptr) break;
  }
  if (found == nullptr) GTEST_SKIP() << "this system has no locale with a decimal comma";
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  const std::string text = Listing(LargeNumbers());
  std::setlocale(LC_ALL, before.c_str());
  ExpectPlainNumbers(text);
}

}  // namespace
}  // namespace orvandel::test
