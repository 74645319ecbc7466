#include "cli/help.h"

#include <sstream>

#include <gtest/gtest.h>

#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

std::size_t LongestLine(const std::string& text) {
  std::istringstream lines(text);
  std::size_t longest = 0;
  for (std::string line; std::getline(lines, line);)
    longest = std::max(longest, line.size());
  return longest;
}

TEST(WrapText, BreaksAtBlanks) {
  EXPECT_EQ(WrapText("one two three", 7), "one two\nthree");
  EXPECT_EQ(WrapText("one two three", 6), "one\ntwo\nthree");
}

TEST(WrapText, LongWordsStandAlone) {
  EXPECT_EQ(WrapText("a incomprehensible b", 5), "a\nincomprehensible\nb");
}

TEST(WrapText, LineBreaksStay) {
  EXPECT_EQ(WrapText("one\ntwo", 20), "one\ntwo");
  EXPECT_EQ(WrapText("", 20), "");
}

TEST(Help, TheProgramListsItsCommandsAndExamples) {
  const ToolRun run = RunOrvandel({"--help"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.err, "");
  for (const char* part :
       {"find", "train", "edges", "contours", "lines", "evaluate", "Usage:", "part.png"})
    EXPECT_TRUE(Contains(run.out, part)) << part;
}

TEST(Help, EveryCommandExplainsItselfWithExamples) {
  for (const char* command : {"find", "train", "contours", "lines", "evaluate"}) {
    const ToolRun run = RunOrvandel({command, "--help"});
    EXPECT_EQ(run.exit_code, 0);
    EXPECT_TRUE(Contains(run.out, std::string("Usage: orvandel ") + command)) << run.out;
    EXPECT_TRUE(Contains(run.out, "Examples:")) << run.out;
    EXPECT_TRUE(Contains(run.out, "--edge-threshold N|auto")) << run.out;
  }
}

TEST(Help, BothEnginesAreExplained) {
  for (const char* command : {"find", "train", "evaluate"}) {
    const std::string help = RunOrvandel({command, "--help"}).out;
    EXPECT_TRUE(Contains(help, "--engine shapes|segments")) << command;
    EXPECT_TRUE(Contains(help, "segments: ")) << command;
  }
}

TEST(Help, FitsATerminalOfEightyColumns) {
  EXPECT_LE(LongestLine(RunOrvandel({"--help"}).out), 80u);
  for (const char* command : {"find", "train", "edges", "contours", "lines", "evaluate"})
    EXPECT_LE(LongestLine(RunOrvandel({command, "--help"}).out), 80u) << command;
}

TEST(Help, ThePixelConventionIsTold) {
  for (const char* command : {"find", "train", "edges", "contours", "lines", "evaluate"})
    EXPECT_TRUE(Contains(RunOrvandel({command, "--help"}).out, "(0, 0)")) << command;
}

TEST(Version, IsPrinted) {
  const ToolRun run = RunOrvandel({"--version"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.out.substr(0, 9), "orvandel ");
  EXPECT_EQ(NumLines(run.out), 1);
}

}  // namespace
}  // namespace orvandel::cli::test
