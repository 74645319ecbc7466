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

constexpr render::Pose kTruePose = {.x = 301.3, .y = 244.8, .angle_deg = 137, .scale = 1.1};

std::string TruthOf(const render::Pose& pose) {
  std::ostringstream text;
  text << pose.x << ',' << pose.y << ',' << pose.angle_deg << ',' << pose.scale;
  return text.str();
}

// The fields of a line of CSV text, by the names in its header.
std::string CsvValue(const std::string& text, int row, const std::string& column) {
  std::istringstream lines(text);
  std::string header;
  std::string line;
  std::getline(lines, header);
  for (int i = 0; i <= row; ++i)
    std::getline(lines, line);
  const std::vector<std::string> names = SplitCsvLine(header);
  const std::vector<std::string> values = SplitCsvLine(line);
  for (std::size_t i = 0; i < names.size() && i < values.size(); ++i) {
    if (names[i] == column) return values[i];
  }
  return "no such field";
}

class EvaluateCommand : public testing::Test {
 protected:
  EvaluateCommand() {
    std::filesystem::create_directories(folder_.Path() / "suite");
    WriteBracketPattern(folder_.File("pattern.png"));
    WriteBracketScene(folder_.File("suite/present.png"), kTruePose);
    WriteOtherScene(folder_.File("suite/absent.png"));
  }

  void WriteManifest(const std::string& rows) {
    WriteBytes(folder_.File("suite/manifest.csv"),
               "case,pattern,scene,instance,cx,cy,angle_deg,scale,occlusion\n" + rows);
  }

  std::string Present(const std::string& name, const render::Pose& pose) {
    return name + ",../pattern.png,present.png,0," + TruthOf(pose) + ",0\n";
  }

  ScratchFolder folder_;
  std::string suite_ = folder_.File("suite");
};

TEST_F(EvaluateCommand, CountsFindsAndFalseFinds) {
  render::Pose elsewhere = kTruePose;
  elsewhere.x += 100;
  WriteManifest(Present("there", kTruePose) + Present("elsewhere", elsewhere) +
                "none,../pattern.png,absent.png,-1,,,,,\n");
  const ToolRun run = RunOrvandel({"evaluate", suite_, "--csv"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  EXPECT_EQ(CsvValue(run.out, 0, "suite"), "suite");
  EXPECT_EQ(CsvValue(run.out, 0, "cases"), "3");
  EXPECT_EQ(CsvValue(run.out, 0, "with_pattern"), "2");
  EXPECT_EQ(CsvValue(run.out, 0, "found"), "1");
  EXPECT_EQ(CsvValue(run.out, 0, "accepted"), "1");
  EXPECT_EQ(CsvValue(run.out, 0, "misplaced"), "1");
  EXPECT_EQ(CsvValue(run.out, 0, "without_pattern"), "1");
  EXPECT_EQ(CsvValue(run.out, 0, "false_finds"), "0");
}

TEST_F(EvaluateCommand, CornerErrorsAreSmallWhereTheTruthIsExact) {
  // Half a pixel of error in both directions, which a mix-up of pixel corners and centres makes,
  // is 0.7; a clean rendered scene is found better than that.
  WriteManifest(Present("there", kTruePose));
  const ToolRun run = RunOrvandel({"evaluate", suite_, "--csv"});
  EXPECT_LT(std::stod(CsvValue(run.out, 0, "corner_median_px")), 0.6) << run.out;
  EXPECT_LT(std::stod(CsvValue(run.out, 0, "angle_median_deg")), 0.3) << run.out;
  EXPECT_LT(std::stod(CsvValue(run.out, 0, "scale_median_percent")), 0.5) << run.out;
}

TEST_F(EvaluateCommand, TheBestInstanceCounts) {
  render::Pose elsewhere = kTruePose;
  elsewhere.y -= 60;
  WriteManifest(Present("two", elsewhere) + "two,../pattern.png,present.png,1," + TruthOf(kTruePose) +
                ",0\n");
  const ToolRun run = RunOrvandel({"evaluate", suite_, "--csv"});
  EXPECT_EQ(CsvValue(run.out, 0, "cases"), "1");
  EXPECT_EQ(CsvValue(run.out, 0, "found"), "1");
}

TEST_F(EvaluateCommand, SeveralSuitesGetATotal) {
  WriteManifest(Present("there", kTruePose));
  const ToolRun csv =
      RunOrvandel({"evaluate", suite_, folder_.File("suite/manifest.csv"), "--csv"});
  EXPECT_EQ(NumLines(csv.out), 4) << csv.out;
  EXPECT_EQ(CsvValue(csv.out, 2, "suite"), "total");
  EXPECT_EQ(CsvValue(csv.out, 2, "found"), "2");
  const ToolRun text = RunOrvandel({"evaluate", suite_});
  EXPECT_TRUE(Contains(text.out, "1/1")) << text.out;
  EXPECT_FALSE(Contains(text.out, "total")) << text.out;
}

TEST_F(EvaluateCommand, CasesGetALineEach) {
  WriteManifest(Present("there", kTruePose) + "none,../pattern.png,absent.png,-1,,,,,\n");
  ASSERT_EQ(RunOrvandel({"evaluate", suite_, "--cases", folder_.File("cases.csv")}).exit_code, 0);
  const std::string cases = Contents(folder_.File("cases.csv"));
  EXPECT_EQ(NumLines(cases), 3) << cases;
  EXPECT_EQ(CsvValue(cases, 0, "case"), "there");
  EXPECT_EQ(CsvValue(cases, 0, "status"), "found");
  EXPECT_EQ(CsvValue(cases, 0, "found"), "1");
  EXPECT_EQ(CsvValue(cases, 1, "with_pattern"), "0");
  EXPECT_EQ(CsvValue(cases, 1, "corner_px"), "");
}

TEST_F(EvaluateCommand, OverlaysShowEachCase) {
  WriteManifest(Present("there", kTruePose) + "none,../pattern.png,absent.png,-1,,,,,\n");
  ASSERT_EQ(RunOrvandel({"evaluate", suite_, "--overlay", folder_.File("o")}).exit_code, 0);
  EXPECT_NE(ReadBack(folder_.File("o/suite.there.overlay.png")), nullptr);
  EXPECT_NE(ReadBack(folder_.File("o/suite.none.overlay.png")), nullptr);
}

TEST_F(EvaluateCommand, OverlaysStayInTheirFolderWhateverTheCaseIsCalled) {
  std::filesystem::create_directories(folder_.Path() / "o" / "suite.x");
  WriteManifest(Present("x/../../out", kTruePose) + Present("a\\b", kTruePose));
  ASSERT_EQ(RunOrvandel({"evaluate", suite_, "--overlay", folder_.File("o")}).exit_code, 0);
  EXPECT_NE(ReadBack(folder_.File("o/suite.x_.._.._out.overlay.png")), nullptr);
  EXPECT_NE(ReadBack(folder_.File("o/suite.a_b.overlay.png")), nullptr);
  EXPECT_FALSE(FileExists(folder_.File("out.overlay.png")));
}

TEST_F(EvaluateCommand, UnusableCasesAreReportedOnceAndCountAsMissed) {
  WriteManifest(Present("there", kTruePose) +
                "gone,../pattern.png,gone.png,0,1,2,3,1,0\n"
                "bad1,../flat.png,present.png,0,1,2,3,1,0\n"
                "bad2,../flat.png,present.png,0,1,2,3,1,0\n");
  WriteFlatImage(folder_.File("flat.png"), 40, 40);
  const ToolRun run = RunOrvandel({"evaluate", suite_, "--csv"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(NumLines(run.err), 2) << run.err;
  EXPECT_TRUE(Contains(run.err, "gone.png: no such file")) << run.err;
  EXPECT_TRUE(Contains(run.err, "flat.png: no contour")) << run.err;
  EXPECT_EQ(CsvValue(run.out, 0, "with_pattern"), "4");
  EXPECT_EQ(CsvValue(run.out, 0, "found"), "1");
}

TEST_F(EvaluateCommand, SearchOptionsApply) {
  WriteManifest(Present("there", kTruePose));
  const ToolRun run = RunOrvandel({"evaluate", suite_, "--csv", "--scale", "1.5,3"});
  EXPECT_EQ(CsvValue(run.out, 0, "found"), "0");
}

TEST_F(EvaluateCommand, WhatIsNoSuiteIsAnError) {
  WriteManifest("");
  for (const std::string& path : {folder_.File("nowhere"), folder_.File("pattern.png"), suite_}) {
    const ToolRun run = RunOrvandel({"evaluate", path});
    EXPECT_EQ(run.exit_code, 2) << path;
    EXPECT_EQ(run.out, "") << path;
    EXPECT_EQ(NumLines(run.err), 1) << run.err;
  }
}

}  // namespace
}  // namespace orvandel::cli::test
