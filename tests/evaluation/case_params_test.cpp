#include "evaluation/case_params.h"

#include <gtest/gtest.h>

#include "evaluation/file_error.h"
#include "tests/support/contains.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::evaluation::test {

using orvandel::test::Contains;
using orvandel::test::ScratchFolder;
using orvandel::test::WriteBytes;

namespace {

std::map<std::string, CaseParams> ParamsIn(const std::string& rows) {
  const ScratchFolder folder;
  WriteBytes(folder.File("params.csv"), "case,params\n" + rows);
  return ReadCaseParams(folder.Path().string());
}

std::string ErrorIn(const std::string& rows) {
  try {
    ParamsIn(rows);
  } catch (const FileError& error) {
    return error.what();
  }
  return "";
}

TEST(CaseParams, TellSymmetryAndFitOfEachCase) {
  auto params =
      ParamsIn("a,symmetry=6;noise=1.2\nb,symmetry=0\nc,tilt=3;symmetry=1;fit_max=1.65\n");
  EXPECT_EQ(params.at("a").symmetry.fold, 6);
  EXPECT_TRUE(params.at("b").symmetry.IsFullCircle());
  EXPECT_EQ(params.at("c").symmetry.fold, 1);
  EXPECT_EQ(params.at("c").tolerance.fit_max_px, 1.65);
  EXPECT_EQ(params.at("a").tolerance.fit_max_px, 0);
}

TEST(CaseParams, KeepAllThatIsTold) {
  auto params = ParamsIn("a,bg=photo:d_desk;flag;size=640x480\n");
  EXPECT_EQ(params.at("a").values, (std::map<std::string, std::string>{
                                       {"bg", "photo:d_desk"}, {"flag", ""}, {"size", "640x480"}}));
  EXPECT_EQ(params.at("a").symmetry.fold, 1);
}

TEST(CaseParams, WhereASymmetryIsToldTheToleranceScales) {
  auto params = ParamsIn("a,symmetry=1\nb,noise=2\n");
  EXPECT_TRUE(params.at("a").tolerance.is_scaled);
  EXPECT_FALSE(params.at("b").tolerance.is_scaled);
}

TEST(CaseParams, ASuiteWithoutTheFileHasNone) {
  const ScratchFolder folder;
  EXPECT_TRUE(ReadCaseParams(folder.Path().string()).empty());
}

TEST(CaseParams, ErrorsNameTheLine) {
  EXPECT_TRUE(Contains(ErrorIn("a,symmetry=1\nb,symmetry=two\n"), "line 3: symmetry 'two'"));
  EXPECT_TRUE(Contains(ErrorIn("a,symmetry=-2\n"), "line 2: symmetry '-2'"));
  EXPECT_TRUE(Contains(ErrorIn("a,fit_max=wide\n"), "line 2: fit_max 'wide'"));
}

}  // namespace
}  // namespace orvandel::evaluation::test
