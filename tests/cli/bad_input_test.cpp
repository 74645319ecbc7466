#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

// Each command that reads an image, given this one.
std::vector<std::vector<std::string>> CommandsThatRead(const std::string& image,
                                                       const ScratchFolder& folder) {
  return {{"contours", image, "--draw", folder.File("out")},
          {"edges", image, "--draw", folder.File("out")},
          {"lines", image, "--draw", folder.File("out")},
          {"train", image, "--overlay", folder.File("out")},
          {"train", "--engine", "segments", image, "--save", folder.File("out")},
          {"find", "--engine", "segments", image, folder.File("good.png"), "--csv"},
          {"find", image, folder.File("good.png"), "--overlay", folder.File("out")},
          {"find", folder.File("good.png"), image, "--output", folder.File("table")}};
}

// Every command refuses the image in one line that names it, and writes no image.
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

TEST(BadImage, Missing) {
  const ScratchFolder folder;
  ExpectRefusal(folder, "missing.png", "no such file");
}

TEST(BadImage, Folder) {
  const ScratchFolder folder;
  std::filesystem::create_directories(folder.Path() / "folder.png");
  ExpectRefusal(folder, "folder.png", "folder");
}

TEST(BadImage, Empty) {
  const ScratchFolder folder;
  for (const char* name : {"empty.png", "empty.bmp", "empty.pgm", "empty.jpg"}) {
    WriteBytes(folder.File(name), "");
    ExpectRefusal(folder, name, "picture");
  }
}

TEST(BadImage, Foreign) {
  const ScratchFolder folder;
  for (const char* name : {"text.png", "text.bmp", "text.pgm", "text.jpg", "text.txt"}) {
    WriteBytes(folder.File(name), "The quick brown fox jumps over the lazy dog.\n");
    ExpectRefusal(folder, name, "not a picture");
  }
}

TEST(BadImage, CutOff) {
  const ScratchFolder folder;
  for (const char* name : {"cut.png", "cut.bmp", "cut.pgm"}) {
    WriteBracketPattern(folder.File(name));
    const std::string whole = Contents(folder.File(name));
    WriteBytes(folder.File(name), whole.substr(0, whole.size() * 2 / 3));
    ExpectRefusal(folder, name, "cut off");
  }
}

TEST(BadImage, WithoutPixels) {
  const ScratchFolder folder;
  WriteBytes(folder.File("zero.pgm"), "P5\n0 10\n255\n");
  WriteBracketPattern(folder.File("good.png"));
  const ToolRun run =
      RunOrvandel({"find", folder.File("good.png"), folder.File("zero.pgm"), "--csv"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, "zero.pgm: ")) << run.err;
}

TEST(BadImage, TooWide) {
  const ScratchFolder folder;
  WriteBytes(folder.File("wide.pgm"), "P5\n65536 1\n255\n" + std::string(65536, '\x40'));
  ExpectRefusal(folder, "wide.pgm", "65535");
}

TEST(BadImage, TheWidestIsRead) {
  const ScratchFolder folder;
  WriteBytes(folder.File("wide.pgm"), "P5\n65535 6\n255\n" + std::string(65535 * 6, '\x40'));
  EXPECT_EQ(RunOrvandel({"contours", folder.File("wide.pgm")}).exit_code, 0);
}

TEST(BadImage, AnImageMayBeTiny) {
  const ScratchFolder folder;
  for (const int size : {1, 2, 3, 4, 5}) {
    WriteFlatImage(folder.File("tiny.png"), size, size);
    EXPECT_EQ(RunOrvandel({"contours", folder.File("tiny.png")}).exit_code, 0) << size;
    EXPECT_EQ(RunOrvandel({"lines", folder.File("tiny.png")}).exit_code, 0) << size;
    for (const char* engine : {"segments", "shapes"}) {
      std::vector<std::string> command = {"train", folder.File("tiny.png"), "--engine", engine};
      if (engine == std::string("segments"))
        command.insert(command.end(), {"--save", folder.File("tiny")});
      const ToolRun run = RunOrvandel(command);
      EXPECT_EQ(run.exit_code, 2) << size << engine;
      EXPECT_EQ(NumLines(run.err), 1) << run.err;
      EXPECT_TRUE(Contains(run.err, "tiny.png: ")) << run.err;
    }
  }
}

TEST(ColourImage, IsConvertedAndSaidWithVerbose) {
  const ScratchFolder folder;
  WriteColourImage(folder.File("colour.ppm"), 90, 60);
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
