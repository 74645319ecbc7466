#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "evaluation/paths.h"
#include "tests/cli/run_program.h"
#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

// Arguments, files and output with letters that no code page of Windows has together.
namespace orvandel::cli::test {

using evaluation::PathFromUtf8;

namespace {

// "Key" in German, "workpiece" in Chinese, "part" in Russian, and a character beyond 16 bits.
constexpr char8_t kLetters[] =
    u8"Schl\u00fcssel \u5de5\u4ef6 \u0434\u0435\u0442\u0430\u043b\u044c \U0001f527";

class FileNames : public testing::Test {
 protected:
  FileNames() {
    std::filesystem::create_directories(PathFromUtf8(own_folder_));
    WriteBracketPattern(image_);
  }

  std::string InOwnFolder(const std::string& suffix) const {
    return own_folder_ + "/" + letters_ + suffix;
  }

  ScratchFolder folder_;
  const std::string letters_ = reinterpret_cast<const char*>(kLetters);
  const std::string own_folder_ = folder_.File(letters_);
  const std::string image_ = InOwnFolder(".png");
};

TEST_F(FileNames, AreReadAndPrintedWithAllTheirLetters) {
  const ToolRun run = RunOrvandel({"find", image_, image_});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, letters_)) << run.out;
}

TEST_F(FileNames, AreNamedInErrors) {
  const ToolRun run = RunOrvandel({"lines", InOwnFolder(" missing.png")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, InOwnFolder(" missing.png") + ": no such file")) << run.err;
}

TEST_F(FileNames, MayBeginWithASlash) {  // with which other programs for Windows begin options
  const ToolRun run = RunOrvandel({"lines", "/no such folder/missing.png"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, "/no such folder/missing.png: no such file")) << run.err;
}

TEST_F(FileNames, OfKnowledgeMayHaveAnyLetter) {
  const ToolRun train =
      RunOrvandel({"train", "--engine", "segments", image_, "--save", InOwnFolder("")});
  EXPECT_EQ(train.exit_code, 0) << train.err;
  EXPECT_TRUE(FileExists(InOwnFolder("_qrsi.bmp")));
  const ToolRun find =
      RunOrvandel({"find", "--engine", "segments", "--knowledge", InOwnFolder(""), image_});
  EXPECT_EQ(find.exit_code, 0) << find.err;
}

TEST_F(FileNames, OfEveryOutputMayHaveAnyLetter) {
  const std::string ctd = InOwnFolder(".ctd"), dump = InOwnFolder(".txt"), csv = InOwnFolder("");
  const ToolRun run =
      RunOrvandel({"contours", image_, "--save", ctd, "--dump", dump, "--csv", "--output", csv});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(FileExists(ctd));
  EXPECT_TRUE(FileExists(csv));
  EXPECT_EQ(Contents(dump).rfind("Contours: ", 0), 0U);
}

// A user's folder of temporary files is named after the user.
TEST_F(FileNames, OfTheTemporaryFolderMayHaveAnyLetter) {
  const ScopedVariable posix("TMPDIR", own_folder_);
  const ScopedVariable windows("TMP", own_folder_);
  const ToolRun run = RunOrvandel({"contours", image_, "--save", folder_.File("contours.ctd"),
                                   "--dump", folder_.File("contours.txt")});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(FileExists(folder_.File("contours.ctd")));
  EXPECT_EQ(Contents(folder_.File("contours.txt")).rfind("Contours: ", 0), 0U);
}

}  // namespace
}  // namespace orvandel::cli::test
