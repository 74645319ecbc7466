#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/temp_folder.h"
#include "tests/cli/test_pictures.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

// Each command that reads a picture, given this one.
std::vector<std::vector<std::string>> CommandsThatRead(const std::string& picture,
                                                       const TempFolder& folder) {
  return {{"contours", picture, "--draw", folder / "out"},
          {"lines", picture, "--draw", folder / "out"},
          {"train", picture, "--save", folder / "out"},
          {"find", picture, folder / "good.png", "--overlay", folder / "out"},
          {"find", folder / "good.png", picture, "--output", folder / "table"}};
}

// Every command refuses the picture in one line that names it, and writes no picture.
void ExpectRefusal(const TempFolder& folder, const std::string& name, const std::string& reason) {
  WriteBracketPattern(folder / "good.png");
  for (const std::vector<std::string>& command : CommandsThatRead(folder / name, folder)) {
    const ToolRun run = RunOrvandel(command);
    EXPECT_EQ(run.exit_code, 2) << command[0];
    EXPECT_EQ(run.out, "") << command[0];
    EXPECT_EQ(NumLines(run.err), 1) << run.err;
    EXPECT_TRUE(Contains(run.err, "orvandel: " + (folder / name) + ": ")) << run.err;
    EXPECT_TRUE(Contains(run.err, reason)) << run.err;
    EXPECT_FALSE(FileExists(folder / "out")) << command[0];
    EXPECT_FALSE(FileExists(folder / "out_qrsi.bmp")) << command[0];
  }
}

TEST(BadPicture, Missing) {
  const TempFolder folder;
  ExpectRefusal(folder, "missing.png", "no such file");
}

TEST(BadPicture, Folder) {
  const TempFolder folder;
  std::filesystem::create_directories(folder.path() / "folder.png");
  ExpectRefusal(folder, "folder.png", "folder");
}

TEST(BadPicture, Empty) {
  const TempFolder folder;
  for (const char* name : {"empty.png", "empty.bmp", "empty.pgm", "empty.jpg"}) {
    WriteTextFile(folder / name, "");
    ExpectRefusal(folder, name, "picture");
  }
}

TEST(BadPicture, Foreign) {
  const TempFolder folder;
  for (const char* name : {"text.png", "text.bmp", "text.pgm", "text.jpg", "text.txt"}) {
    WriteTextFile(folder / name, "The quick brown fox jumps over the lazy dog.\n");
    ExpectRefusal(folder, name, "not a picture");
  }
}

TEST(BadPicture, CutOff) {
  const TempFolder folder;
  for (const char* name : {"cut.png", "cut.bmp", "cut.pgm"}) {
    WriteBracketPattern(folder / name);
    const std::string whole = ReadFile(folder / name);
    WriteTextFile(folder / name, whole.substr(0, whole.size() * 2 / 3));
    ExpectRefusal(folder, name, "cut off");
  }
}

TEST(BadPicture, WithoutPixels) {
  const TempFolder folder;
  WriteTextFile(folder / "zero.pgm", "P5\n0 10\n255\n");
  WriteBracketPattern(folder / "good.png");
  const ToolRun run = RunOrvandel({"find", folder / "good.png", folder / "zero.pgm", "--csv"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, "zero.pgm: ")) << run.err;
}

TEST(BadPicture, TooWide) {
  const TempFolder folder;
  WriteTextFile(folder / "wide.pgm", "P5\n65536 1\n255\n" + std::string(65536, '\x40'));
  ExpectRefusal(folder, "wide.pgm", "65535");
}

TEST(BadPicture, TheWidestIsRead) {
  const TempFolder folder;
  WriteTextFile(folder / "wide.pgm", "P5\n65535 6\n255\n" + std::string(65535 * 6, '\x40'));
  EXPECT_EQ(RunOrvandel({"contours", folder / "wide.pgm"}).exit_code, 0);
}

TEST(BadPicture, APictureMayBeTiny) {
  const TempFolder folder;
  for (const int size : {1, 2, 3, 4, 5}) {
    WriteFlatPicture(folder / "tiny.png", size, size);
    EXPECT_EQ(RunOrvandel({"contours", folder / "tiny.png"}).exit_code, 0) << size;
    EXPECT_EQ(RunOrvandel({"lines", folder / "tiny.png"}).exit_code, 0) << size;
    const ToolRun run = RunOrvandel({"train", folder / "tiny.png", "--save", folder / "tiny"});
    EXPECT_EQ(run.exit_code, 2) << size;
    EXPECT_EQ(NumLines(run.err), 1) << run.err;
  }
}

TEST(ColourPicture, IsConvertedAndSaidWithVerbose) {
  const TempFolder folder;
  WriteColourPicture(folder / "colour.ppm", 90, 60);
  for (const char* command : {"contours", "lines"}) {
    const ToolRun quiet = RunOrvandel({command, folder / "colour.ppm"});
    EXPECT_EQ(quiet.exit_code, 0) << quiet.err;
    EXPECT_EQ(quiet.err, "");
    const ToolRun verbose = RunOrvandel({command, folder / "colour.ppm", "--verbose"});
    EXPECT_TRUE(Contains(verbose.err, "colour.ppm: colour picture")) << verbose.err;
  }
}

}  // namespace
}  // namespace orvandel::cli::test
