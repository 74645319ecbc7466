#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "cli/contour_set.h"
#include "evaluation/csv.h"
#include "orvandel/classic/ctd.h"
#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {

using evaluation::SplitCsvLine;

namespace {

// Sides that cut through pixels: there the sub-pixel position shows, and no two rows of pixels are
// equally strong edges.
constexpr Box kBox = {.left = 20.3, .top = 15.4, .right = 60.4, .bottom = 45.3};
constexpr double kSubPixel = 0.05;  // pixels

// A box's side in the count of the program, in which pixels have their centres at whole numbers.
constexpr double Printed(double side) {
  return side - 0.5;
}

class ContoursCommand : public testing::Test {
 protected:
  ContoursCommand() { WriteBox(image_, 80, 60, kBox); }

  ScratchFolder folder_;
  std::string image_ = folder_.File("box.png");
};

TEST_F(ContoursCommand, ABoxIsOneClosedContour) {
  const ToolRun run = RunOrvandel({"contours", image_});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "1 contours of ")) << run.out;
  EXPECT_TRUE(Contains(run.out, "closed")) << run.out;
}

TEST_F(ContoursCommand, CsvTellsWhatAContourSpans) {
  const ToolRun run = RunOrvandel({"contours", image_, "--csv"});
  std::istringstream lines(run.out);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(line, "contour,points,closed,min_x,min_y,max_x,max_y");
  ASSERT_TRUE(std::getline(lines, line));
  const std::vector<std::string> fields = SplitCsvLine(line);
  ASSERT_EQ(fields.size(), 7u);
  EXPECT_EQ(fields[2], "1");
  EXPECT_NEAR(std::stod(fields[3]), Printed(kBox.left), kSubPixel);
  EXPECT_NEAR(std::stod(fields[4]), Printed(kBox.top), kSubPixel);
  EXPECT_NEAR(std::stod(fields[5]), Printed(kBox.right), kSubPixel);
  EXPECT_NEAR(std::stod(fields[6]), Printed(kBox.bottom), kSubPixel);
}

TEST_F(ContoursCommand, AHighThresholdOrSizeSeesNothing) {
  // A step from 50 to 200 has a magnitude below 150.
  EXPECT_TRUE(
      Contains(RunOrvandel({"contours", image_, "--edge-threshold", "250"}).out, "0 contours"));
  EXPECT_TRUE(
      Contains(RunOrvandel({"contours", image_, "--min-contour", "500"}).out, "0 contours"));
  EXPECT_TRUE(Contains(RunOrvandel({"contours", image_, "--max-contour", "30"}).out, "0 contours"));
}

TEST_F(ContoursCommand, TheSavedFileIsReadBack) {
  const ToolRun run = RunOrvandel({"contours", image_, "--save", folder_.File("box.ctd")});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const ContourHandle set = NewContourSet();
  ASSERT_EQ(ctd_load(set.get(), (folder_.File("box.ctd")).c_str()), 0);
  EXPECT_EQ(ctd_contour_count(set.get()), 1);
  EXPECT_EQ(ctd_contour_closed(set.get(), 0), 1);
}

TEST_F(ContoursCommand, RawContoursAreNotSpacedEvenly) {
  RunOrvandel({"contours", image_, "--save", folder_.File("even.ctd")});
  RunOrvandel({"contours", image_, "--raw", "--save", folder_.File("raw.ctd")});
  EXPECT_NE(Contents(folder_.File("even.ctd")), Contents(folder_.File("raw.ctd")));
}

TEST_F(ContoursCommand, TheDumpListsEveryPoint) {
  ASSERT_EQ(RunOrvandel({"contours", image_, "--dump", folder_.File("box.txt")}).exit_code, 0);
  const std::string dump = Contents(folder_.File("box.txt"));
  int num_contours = 0;
  int num_points = 0;
  ASSERT_EQ(
      std::sscanf(dump.c_str(), "Contours: %d; Total of points: %d", &num_contours, &num_points),
      2);
  EXPECT_EQ(num_contours, 1);
  // A head, two lines and an empty one for the contour, and a line per point.
  EXPECT_EQ(NumLines(dump), 1 + 3 + num_points);
}

TEST_F(ContoursCommand, TheDrawingShowsTheContourOverTheDarkenedImage) {
  ASSERT_EQ(RunOrvandel({"contours", image_, "--draw", folder_.File("seen.png"), "--zoom", "3"})
                .exit_code,
            0);
  const ImagePtr drawn = ReadBack(folder_.File("seen.png"));
  ASSERT_NE(drawn, nullptr);
  EXPECT_EQ(drawn->width, 240);
  EXPECT_EQ(drawn->height, 180);
  EXPECT_LT(drawn->row[90][120], 200);                      // the box, darkened
  EXPECT_GT(drawn->row[90][61], drawn->row[90][120] + 20);  // its left side, drawn
}

TEST_F(ContoursCommand, OnlyTheFirstContoursAreListedUnlessAllAreWanted) {
  WriteBoxes(folder_.File("boxes.png"), 5, 5);
  const ToolRun few = RunOrvandel({"contours", folder_.File("boxes.png")});
  const ToolRun all = RunOrvandel({"contours", folder_.File("boxes.png"), "--all"});
  EXPECT_TRUE(Contains(few.out, "25 contours")) << few.out;
  EXPECT_TRUE(Contains(few.out, "and 5 more")) << few.out;
  EXPECT_EQ(NumLines(all.out), NumLines(few.out) + 5 - 1);
}

TEST_F(ContoursCommand, AnImageWithoutEdgesHasNone) {
  WriteFlatImage(folder_.File("flat.png"), 40, 30);
  const ToolRun run = RunOrvandel({"contours", folder_.File("flat.png"), "--save",
                                   folder_.File("f"), "--draw", folder_.File("f.png")});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "0 contours of 0 points")) << run.out;
  EXPECT_EQ(Contents(folder_.File("f")).size(), 12u);  // an empty set is its three counts
}

TEST_F(ContoursCommand, TheThresholdCanBeEstimated) {
  const ToolRun run = RunOrvandel({"contours", image_, "--edge-threshold", "auto"});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "edge threshold ")) << run.out;
  EXPECT_FALSE(Contains(run.out, "edge threshold -1")) << run.out;
}

}  // namespace
}  // namespace orvandel::cli::test
