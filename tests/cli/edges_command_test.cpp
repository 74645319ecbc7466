#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "base/rounding.h"
#include "evaluation/csv.h"
#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

// The box covers 20.3 to 90.4 and 15.4 to 75.3 with pixels at 0 to 1, 1 to 2 and so on.
constexpr Box kBoxOfEdges = {.left = 20.3, .top = 15.4, .right = 90.4, .bottom = 75.3};

// Where linear shares of a pixel put the edge is off the true side by up to a few hundredths.
constexpr double kEdgeTolerance = 0.1;  // pixels

class EdgesCommand : public testing::Test {
 protected:
  EdgesCommand() { WriteBox(image_, 120, 100, kBoxOfEdges); }

  ScratchFolder folder_;
  std::string image_ = folder_.File("box.png");
};

TEST_F(EdgesCommand, PointsLieOnTheSidesAndPointToTheBrighterSide) {
  const ToolRun run = RunOrvandel({"edges", image_, "--csv"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  std::istringstream lines(run.out);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(line, "x,y,direction_deg,strength");
  int num_left = 0;
  int num_bottom = 0;
  while (std::getline(lines, line)) {
    const std::vector<std::string> fields = evaluation::SplitCsvLine(line);
    ASSERT_EQ(fields.size(), 4u);
    const double x = std::stod(fields[0]);
    const double y = std::stod(fields[1]);
    const double direction = std::stod(fields[2]);
    if (std::abs(y - 45) < 20 && x < 60) {  // far from the corners
      EXPECT_NEAR(x, kBoxOfEdges.left - 0.5, kEdgeTolerance);
      EXPECT_NEAR(direction, 0, 0.1);  // the box is bright, to the right
      ++num_left;
    }
    if (std::abs(x - 55) < 20 && y > 45) {
      EXPECT_NEAR(y, kBoxOfEdges.bottom - 0.5, kEdgeTolerance);
      EXPECT_NEAR(direction, -90, 0.1);  // up
      ++num_bottom;
    }
    EXPECT_GE(std::stod(fields[3]), 12);
  }
  EXPECT_NEAR(num_left, 40, 2);  // one in each row
  EXPECT_NEAR(num_bottom, 40, 2);
}

TEST_F(EdgesCommand, JsonTellsTheSamePoints) {
  const nlohmann::json document =
      nlohmann::json::parse(RunOrvandel({"edges", image_, "--json"}).out);
  EXPECT_EQ(document["width"], 120);
  const long num_lines = NumLines(RunOrvandel({"edges", image_, "--csv"}).out);
  EXPECT_EQ(static_cast<long>(document["points"].size()), num_lines - 1);
  EXPECT_LE(std::abs(document["points"].at(0)["direction_rad"].get<double>()), kPi + 1e-6);
}

TEST_F(EdgesCommand, TextListsTheFirstUnlessAllAreWanted) {
  const ToolRun few = RunOrvandel({"edges", image_});
  EXPECT_TRUE(Contains(few.out, "edge points of strength 12 or more")) << few.out;
  EXPECT_TRUE(Contains(few.out, "more (--all)")) << few.out;
  EXPECT_GT(NumLines(RunOrvandel({"edges", image_, "--all"}).out), 200);
}

TEST_F(EdgesCommand, AHighThresholdLeavesNone) {
  // A step of 150 levels has the strength 56.
  EXPECT_TRUE(
      Contains(RunOrvandel({"edges", image_, "--min-strength", "60"}).out, "0 edge points"));
}

TEST_F(EdgesCommand, TheDrawingShowsThem) {
  const ToolRun run =
      RunOrvandel({"edges", image_, "--draw", folder_.File("edges.png"), "--zoom", "3"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const ImagePtr drawn = ReadBack(folder_.File("edges.png"));
  ASSERT_EQ(drawn->width, 360);
  EXPECT_GT(drawn->row[135][61], drawn->row[135][150] + 20);  // the left side
}

TEST_F(EdgesCommand, AnImageWithoutThemIsNoError) {
  WriteFlatImage(folder_.File("flat.png"), 40, 30);
  for (const char* option : {"--csv", "--json", "--all"})
    EXPECT_EQ(RunOrvandel({"edges", folder_.File("flat.png"), option}).exit_code, 0) << option;
}

}  // namespace
}  // namespace orvandel::cli::test
