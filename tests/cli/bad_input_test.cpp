#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/test_pictures.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

// Each command that reads a picture, given this one.
std::vector<std::vector<std::string>> CommandsThatRead(const std::string& picture,
                                                       const ScratchFolder& folder) {
  return {{"contours", picture, "--draw", folder.File("out")},
          {"lines", picture, "--draw", folder.File("out")},
          {"train", picture, "--save", folder.File("out")},
          {"find", picture, folder.File("good.png"), "--overlay", folder.File("out")},
          {"find", folder.File("good.png"), picture, "--output", folder.File("table")}};
}

// Every command refuses the picture in one line that names it, and writes no picture.
void ExpectRefusal(const ScratchFolder& folder, const std::string& name,
                   const std::string& reason) {
  WriteBracketPattern(folder.File("good.png"));
  for (const std::vector<std::string>& command : CommandsThatRead(folder.File(name), folder)) {
    const ToolRun run = RunOrvandel(command);
    EXPECT_EQ(run.exit_code, 2) << command[0];
    EXPECT_EQ(run.out, "") << command[0];
    EXPECT_EQ(NumLines(run.err), 1) << run.err;
    EXPECT_TRUE(Contains(run.err, "orvandel: " + (folder.File(name)) + ": ")) << run.err;
    EXPECT_TRUE(Contains(run.err, reason)) << run.err;
    EXPECT_FALSE(FileExists(folder.File("out"))) << command[0];
    EXPECT_FALSE(FileExists(folder.File("out_qrsi.bmp"))) << command[0];
  }
}

TEST(BadPicture, Missing) {
  const ScratchFolder folder;
  ExpectRefusal(folder, "missing.png", "no such file");
}

TEST(BadPicture, Folder) {
  const ScratchFolder folder;
  std::filesystem::create_directories(folder.Path() / "folder.png");
  ExpectRefusal(folder, "folder.png", "folder");
}

TEST(BadPicture, Empty) {
  const ScratchFolder folder;
  for (const char* name : {"empty.png", "empty.bmp", "empty.pgm", "empty.jpg"}) {
    WriteBytes(folder.File(name), "");
    ExpectRefusal(folder, name, "picture");
  }
}

TEST(BadPicture, Foreign) {
  const ScratchFolder folder;
  for (const char* name : {"text.png", "text.bmp", "text.pgm", "text.jpg", "text.txt"}) {
    WriteBytes(folder.File(name), "The quick brown fox jumps over the lazy dog.\n");
    ExpectRefusal(folder, name, "not a picture");
  }
}

TEST(BadPicture, CutOff) {
  const ScratchFolder folder;
  for (const char* name : {"cut.png", "cut.bmp", "cut.pgm"}) {
    WriteBracketPattern(folder.File(name));
    const std::string whole = Contents(folder.File(name));
    WriteBytes(folder.File(name), whole.substr(0, whole.size() * 2 / 3));
    ExpectRefusal(folder, name, "cut off");
  }
}

TEST(BadPicture, WithoutPixels) {
  const ScratchFolder folder;
  WriteBytes(folder.File("zero.pgm"), "P5\n0 10\n255\n");
  WriteBracketPattern(folder.File("good.png"));
  const ToolRun run =
      RunOrvandel({"find", folder.File("good.png"), folder.File("zero.pgm"), "--csv"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, "zero.pgm: ")) << run.err;
}

TEST(BadPicture, TooWide) {
  const ScratchFolder folder;
  WriteBytes(folder.File("wide.pgm"), "P5\n65536 1\n255\n" + std::string(65536, '\x40'));
  ExpectRefusal(folder, "wide.pgm", "65535");
}

TEST(BadPicture, TheWidestIsRead) {
  const ScratchFolder folder;
  WriteBytes(folder.File("wide.pgm"), "P5\n65535 6\n255\n" + std::string(65535 * 6, '\x40'));
  EXPECT_EQ(RunOrvandel({"contours", folder.File("wide.pgm")}).exit_code, 0);
}

TEST(BadPicture, APictureMayBeTiny) {
  const ScratchFolder folder;
  for (const int size : {1, 2, 3, 4, 5}) {
    WriteFlatPicture(folder.File("tiny.png"), size, size);
    EXPECT_EQ(RunOrvandel({"contours", folder.File("tiny.png")}).exit_code, 0) << size;
    EXPECT_EQ(RunOrvandel({"lines", folder.File("tiny.png")}).exit_code, 0) << size;
    const ToolRun run =
        RunOrvandel({"train", folder.File("tiny.png"), "--save", folder.File("tiny")});
    EXPECT_EQ(run.exit_code, 2) << size;
    EXPECT_EQ(NumLines(run.err), 1) << run.err;
  }
}

TEST(ColourPicture, IsConvertedAndSaidWithVerbose) {
  const ScratchFolder folder;
  WriteColourPicture(folder.File("colour.ppm"), 90, 60);
  for (const char* command : {"contours", "lines"}) {
    const ToolRun quiet = RunOrvandel({command, folder.File("colour.ppm")});
    EXPECT_EQ(quiet.exit_code, 0) << quiet.err;
    EXPECT_EQ(quiet.err, "");
    const ToolRun verbose = RunOrvandel({command, folder.File("colour.ppm"), "--verbose"});
    EXPECT_TRUE(Contains(verbose.err, "colour.ppm: colour picture")) << verbose.err;
  }
}

}  // namespace
}  // namespace orvandel::cli::test
