#include "evaluation/manifest.h"

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "evaluation/file_error.h"
#include "evaluation/paths.h"
#include "tests/support/contains.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::evaluation::test {

using orvandel::test::Contains;
using orvandel::test::ScratchFolder;
using orvandel::test::WriteBytes;

namespace {

constexpr const char* kHeader = "case,pattern,scene,instance,cx,cy,angle_deg,scale,occlusion\n";

// The message of the error that reading gives; empty without one.
std::string ErrorOfReading(const ScratchFolder& folder, const std::string& text) {
  WriteBytes(folder.File("manifest.csv"), text);
  try {
    ReadSuite(folder.Path().string());
  } catch (const FileError& error) {
    return error.what();
  }
  return "";
}

TEST(Manifest, RowsOfACaseAreItsInstances) {
  const ScratchFolder folder;
  WriteBytes(folder.File("manifest.csv"), std::string(kHeader) +
                                              "two,../p.png,scenes/a.png,0,10.5,20,90,1,0\n"
                                              "two,../p.png,scenes/a.png,1,30,40,-45,0.5,0.2\n"
                                              "none,../p.png,scenes/b.png,-1,,,,,\n");
  const Suite suite = ReadSuite(folder.Path().string());
  ASSERT_EQ(suite.cases.size(), 2u);
  EXPECT_EQ(suite.cases[0].name, "two");
  ASSERT_EQ(suite.cases[0].instances.size(), 2u);
  EXPECT_EQ(suite.cases[0].instances[0].x, 10.5);
  EXPECT_EQ(suite.cases[0].instances[0].y, 20);
  EXPECT_NEAR(suite.cases[0].instances[1].angle, -kPi / 4, 1e-15);
  EXPECT_EQ(suite.cases[0].instances[1].scale, 0.5);
  EXPECT_TRUE(suite.cases[1].instances.empty());
}

TEST(Manifest, PathsAreRelativeToItsFolder) {
  const ScratchFolder folder;
  WriteBytes(folder.File("manifest.csv"),
             std::string(kHeader) + "a,sub/../p.png,scenes/a.png,-1,,,,,\n");
  const Suite suite = ReadSuite(folder.Path().string());
  // As paths, for Windows separates folders by two characters.
  EXPECT_EQ(PathFromUtf8(suite.cases[0].pattern), folder.Path() / "p.png");
  EXPECT_EQ(PathFromUtf8(suite.cases[0].scene), folder.Path() / "scenes/a.png");
}

TEST(Manifest, FolderAndFileNameTheSameSuite) {
  const ScratchFolder folder;
  WriteBytes(folder.File("manifest.csv"), std::string(kHeader) + "a,p,s,-1,,,,,\n");
  const std::string name = folder.Path().filename().string();
  EXPECT_EQ(ReadSuite(folder.Path().string()).name, name);
  EXPECT_EQ(ReadSuite(folder.Path().string() + "/").name, name);
  EXPECT_EQ(ReadSuite(folder.File("manifest.csv")).name, name);
}

TEST(Manifest, ColumnsMayStandInAnyOrder) {
  const ScratchFolder folder;
  WriteBytes(folder.File("manifest.csv"),
             "\xEF\xBB\xBFscale,angle_deg,cy,cx,instance,scene,pattern,case\r\n"
             "2,30,20,10,0,s.png,p.png,a\r\n\r\n");
  const Suite suite = ReadSuite(folder.Path().string());
  ASSERT_EQ(suite.cases.size(), 1u);
  EXPECT_EQ(suite.cases[0].name, "a");
  EXPECT_EQ(suite.cases[0].instances.at(0).scale, 2);
  EXPECT_EQ(suite.cases[0].instances.at(0).x, 10);
}

TEST(Manifest, ErrorsNameTheLine) {
  const ScratchFolder folder;
  const std::string header = kHeader;
  EXPECT_TRUE(Contains(ErrorOfReading(folder, header + "a,p,s,0,1,x,3,1,0\n"),
                       "line 2: cy 'x' is not a number"));
  EXPECT_TRUE(Contains(ErrorOfReading(folder, header + "a,p,s,-1,,,,,\nb,p,s,0,1\n"),
                       "line 3: 'cy' is missing"));
  EXPECT_TRUE(Contains(ErrorOfReading(folder, header + "a,p,s,0,1,2,3,0,0\n"), "scale"));
  EXPECT_TRUE(Contains(ErrorOfReading(folder, header + "a,p,s,-1,,,,,\na,q,s,-1,,,,,\n"),
                       "line 3: case 'a' had another pattern or scene before"));
}

TEST(Manifest, AMissingColumnIsNamed) {
  const ScratchFolder folder;
  EXPECT_TRUE(Contains(ErrorOfReading(folder, "case,pattern,scene\n"), "'instance' is missing"));
}

TEST(Manifest, AnEmptySuiteIsAnError) {
  const ScratchFolder folder;
  EXPECT_TRUE(Contains(ErrorOfReading(folder, kHeader), "no cases"));
  EXPECT_TRUE(Contains(ErrorOfReading(folder, ""), "line 1"));
}

TEST(Manifest, AFolderWithoutOneIsNoSuite) {
  const ScratchFolder folder;
  EXPECT_THROW(ReadSuite(folder.Path().string()), FileError);
  EXPECT_THROW(ReadSuite(folder.File("nowhere")), FileError);
}

TEST(Manifest, CasesHaveTheParametersBesideIt) {
  const ScratchFolder folder;
  WriteBytes(folder.File("manifest.csv"),
             "case,pattern,scene,instance,cx,cy,angle_deg,scale\n"
             "a,p.png,s.png,0,1,2,3,1\nb,p.png,s.png,0,1,2,3,1\n");
  WriteBytes(folder.File("params.csv"), "case,params\na,symmetry=4;noise=1\n");
  for (const std::string& path : {folder.Path().string(), folder.File("manifest.csv")}) {
    const Suite suite = ReadSuite(path);
    ASSERT_EQ(suite.cases.size(), 2u);
    EXPECT_EQ(suite.cases[0].params.symmetry.fold, 4);
    EXPECT_EQ(suite.cases[0].params.values.at("noise"), "1");
    EXPECT_EQ(suite.cases[1].params.symmetry.fold, 1);
  }
}

}  // namespace
}  // namespace orvandel::evaluation::test
