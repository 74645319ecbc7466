// The library against the reference stages over the images of the suites that the build was told of.

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "evaluation/image_file.h"
#include "evaluation/manifest.h"
#include "evaluation/paths.h"
#include "tests/reference/chain_comparison.h"

namespace orvandel::test {
namespace {

constexpr char kSuites[] = ORVANDEL_SUITES;  // a folder of suites; empty when there is none

/// The suites' folders in order of their names; one empty name when there are none.
std::vector<std::string> SuiteFolders() {
  std::vector<std::string> folders;
  if (kSuites[0] != '\0') {
    for (const auto& entry :
         std::filesystem::directory_iterator(evaluation::PathFromUtf8(kSuites))) {
      if (std::filesystem::exists(entry.path() / "manifest.csv"))
        folders.push_back(evaluation::Utf8FromPath(entry.path()));
    }
  }
  std::sort(folders.begin(), folders.end());
  if (folders.empty()) folders.emplace_back();
  return folders;
}

std::string TestName(const testing::TestParamInfo<std::string>& info) {
  return info.param.empty()
             ? "none"
             : evaluation::Utf8FromPath(evaluation::PathFromUtf8(info.param).filename());
}

class SuiteTest : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (GetParam().empty()) GTEST_SKIP() << "no suites: configure with ORVANDEL_SUITES=<folder>";
  }

  const ImagePtr& Image(const std::string& path) {
    ImagePtr& image = images_[path];
    if (!image) image = evaluation::ReadImage(path).image;
    return image;
  }

 private:
  std::map<std::string, ImagePtr> images_;
};

TEST_P(SuiteTest, StagesAgreeOnEveryImage) {
  std::map<std::string, bool> done;
  for (const evaluation::TestCase& test : evaluation::ReadSuite(GetParam()).cases) {
    for (const std::string& path : {test.pattern, test.scene}) {
      if (std::exchange(done[path], true)) continue;
      SCOPED_TRACE(path);
      const ImagePtr image = evaluation::ReadImage(path).image;
      for (const int threshold : {0, 16, 32})
        ExpectSameStages(image, threshold);
    }
  }
  EXPECT_FALSE(done.empty());
}

TEST_P(SuiteTest, SearchesAgreeInEveryCase) {
  int num_searches = 0;
  for (const evaluation::TestCase& test : evaluation::ReadSuite(GetParam()).cases) {
    SCOPED_TRACE(test.name);
    ExpectSameSearch(Image(test.pattern), Image(test.scene));
    ++num_searches;
  }
  EXPECT_GT(num_searches, 0);
}

INSTANTIATE_TEST_SUITE_P(Suites, SuiteTest, testing::ValuesIn(SuiteFolders()), TestName);

}  // namespace
}  // namespace orvandel::test
