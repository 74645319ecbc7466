#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

class OutputFile : public testing::Test {
 protected:
  OutputFile() { WriteBracketPattern(image_); }

  // Every option that writes a file, with this one.
  std::vector<std::vector<std::string>> CommandsThatWrite(const std::string& file) const {
    return {{"contours", image_, "--save", file},      {"contours", image_, "--dump", file},
            {"contours", image_, "--draw", file},      {"contours", image_, "--output", file},
            {"lines", image_, "--draw", file},         {"lines", image_, "--output", file},
            {"find", image_, image_, "--output", file}};
  }

  ScratchFolder folder_;
  std::string image_ = folder_.File("image.png");
};

TEST_F(OutputFile, AMissingFolderIsNamed) {
  for (const auto& command : CommandsThatWrite(folder_.File("nowhere/file"))) {
    const ToolRun run = RunOrvandel(command);
    EXPECT_EQ(run.exit_code, 2) << command[0] << command[2];
    EXPECT_EQ(NumLines(run.err), 1) << run.err;
    EXPECT_TRUE(Contains(run.err, "nowhere/file: cannot be written: there is no folder"))
        << run.err;
    EXPECT_FALSE(FileExists(folder_.File("nowhere")));
  }
}

#if defined(__linux__)
TEST_F(OutputFile, AFullDiskIsAnError) {
  if (!FileExists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  for (const auto& command : CommandsThatWrite("/dev/full")) {
    const ToolRun run = RunOrvandel(command);
    EXPECT_EQ(run.exit_code, 2) << command[0] << command[2];
    EXPECT_TRUE(Contains(run.err, "/dev/full: cannot be written")) << run.err;
  }
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(OutputFile, AFullStandardOutputIsAnError) {
  if (!FileExists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"find", image_, image_}, {"lines", image_}, {"--help"}}) {
    const ToolRun run = RunOrvandelInto("/dev/full", command);
    EXPECT_EQ(run.exit_code, 2) << command[0];
    EXPECT_TRUE(Contains(run.err, "standard output: cannot be written")) << run.err;
  }
}
#endif

TEST_F(OutputFile, AFolderIsNotOverwritten) {
  std::filesystem::create_directories(folder_.Path() / "folder");
  for (const auto& command : CommandsThatWrite(folder_.File("folder"))) {
    const ToolRun run = RunOrvandel(command);
    EXPECT_EQ(run.exit_code, 2) << command[0] << command[2];
    EXPECT_TRUE(std::filesystem::is_directory(folder_.Path() / "folder"));
  }
}

TEST_F(OutputFile, AnOlderFileIsReplaced) {
  for (const auto& command : CommandsThatWrite(folder_.File("file"))) {
    WriteBytes(folder_.File("file"), "older");
    const ToolRun run = RunOrvandel(command);
    EXPECT_EQ(run.exit_code, 0) << run.err;
    EXPECT_NE(Contents(folder_.File("file")), "older") << command[0] << command[2];
  }
}

TEST_F(OutputFile, NothingIsLeftBesideIt) {
  for (const auto& command : CommandsThatWrite(folder_.File("file")))
    RunOrvandel(command);
  int num_files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder_.Path()))
    ++num_files;
  EXPECT_EQ(num_files, 2);  // the image and the file
}

TEST_F(OutputFile, AnOverlayFolderThatCannotBeMadeIsAnError) {
  WriteBytes(folder_.File("taken"), "a file");
  const ToolRun run = RunOrvandel({"find", image_, image_, "--overlay", folder_.File("taken/o")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, "taken/o: this folder cannot be made")) << run.err;
}

}  // namespace
}  // namespace orvandel::cli::test
