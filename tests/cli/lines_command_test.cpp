#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "evaluation/csv.h"
#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {

using evaluation::SplitCsvLine;

namespace {

std::vector<std::vector<std::string>> CsvRows(const std::string& text) {
  std::istringstream lines(text);
  std::vector<std::vector<std::string>> rows;
  std::string line;
  std::getline(lines, line);  // the header
  while (std::getline(lines, line))
    rows.push_back(SplitCsvLine(line));
  return rows;
}

constexpr Box kBox = {.left = 20.3, .top = 15.4, .right = 90.4, .bottom = 75.3};
constexpr double kSubPixel = 0.05;  // pixels

// A box's side in the count of the program, in which pixels have their centres at whole numbers.
constexpr double Printed(double side) {
  return side - 0.5;
}

class LinesCommand : public testing::Test {
 protected:
  LinesCommand() { WriteBox(image_, 120, 100, kBox); }

  ScratchFolder folder_;
  std::string image_ = folder_.File("box.png");
};

TEST_F(LinesCommand, TheSidesOfABoxAreStraightEdges) {
  const ToolRun run = RunOrvandel({"lines", image_, "--csv"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  bool has_side[4] = {};  // left, right, top, bottom
  for (const std::vector<std::string>& row : CsvRows(run.out)) {
    ASSERT_EQ(row.size(), 12u);
    const double mid_x = (std::stod(row[1]) + std::stod(row[3])) / 2;
    const double mid_y = (std::stod(row[2]) + std::stod(row[4])) / 2;
    const double angle = std::abs(std::stod(row[5]));
    const double distances[4] = {
        std::abs(mid_x - Printed(kBox.left)), std::abs(mid_x - Printed(kBox.right)),
        std::abs(mid_y - Printed(kBox.top)), std::abs(mid_y - Printed(kBox.bottom))};
    for (int side = 0; side < 4; ++side) {
      const double wanted = side < 2 ? 90 : 0;
      if (distances[side] < kSubPixel && std::abs(angle - wanted) < 0.1) has_side[side] = true;
    }
  }
  for (int side = 0; side < 4; ++side)
    EXPECT_TRUE(has_side[side]) << side << "\n" << run.out;
}

TEST_F(LinesCommand, TheTableCountsThem) {
  const ToolRun run = RunOrvandel({"lines", image_});
  const auto rows = CsvRows(RunOrvandel({"lines", image_, "--csv"}).out);
  EXPECT_TRUE(Contains(run.out, std::to_string(rows.size()) + " straight edges")) << run.out;
  EXPECT_EQ(NumLines(run.out), static_cast<long>(rows.size()) + 3);
}

TEST_F(LinesCommand, TheBestSupportedComeFirst) {
  int last = 1'000'000;
  for (const auto& row : CsvRows(RunOrvandel({"lines", image_, "--csv"}).out)) {
    EXPECT_LE(std::stoi(row[9]), last);
    last = std::stoi(row[9]);
  }
}

TEST_F(LinesCommand, TheDrawingShowsThem) {
  ASSERT_EQ(RunOrvandel({"lines", image_, "--draw", folder_.File("lines.png")}).exit_code, 0);
  const ImagePtr drawn = ReadBack(folder_.File("lines.png"));
  ASSERT_NE(drawn, nullptr);
  EXPECT_EQ(drawn->width, 120);
  EXPECT_GT(drawn->row[45][20], drawn->row[45][5] + 20);  // the left side against the dark ground
}

TEST_F(LinesCommand, AnImageWithoutThemIsNoError) {
  WriteDisc(folder_.File("disc.png"), 8);
  const ToolRun run =
      RunOrvandel({"lines", folder_.File("disc.png"), "--draw", folder_.File("d.png")});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_EQ(run.out, "0 straight edges\n");
}

}  // namespace
}  // namespace orvandel::cli::test
