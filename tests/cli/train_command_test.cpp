#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/cli/temp_folder.h"
#include "tests/cli/test_pictures.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

using Json = nlohmann::json;

constexpr render::Pose kPose = {.x = 330.1, .y = 220.6, .angle_deg = -35, .scale = 0.9};

TEST(TrainCommand, KeepsThePatternPicture) {
  const TempFolder folder;
  WriteBracketPattern(folder / "pattern.png");
  const ToolRun run = RunOrvandel({"train", folder / "pattern.png", "--save", folder / "part"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "220 x 180 pixels")) << run.out;
  EXPECT_TRUE(Contains(run.out, folder / "part_qrsi.bmp")) << run.out;

  const ImagePtr kept = ReadBack(folder / "part_qrsi.bmp");
  const ImagePtr pattern = ReadBack(folder / "pattern.png");
  ASSERT_NE(kept, nullptr);
  ASSERT_EQ(kept->width, pattern->width);
  ASSERT_EQ(kept->height, pattern->height);
  for (int y = 0; y < kept->height; ++y)
    ASSERT_TRUE(std::equal(kept->row[y], kept->row[y] + kept->width, pattern->row[y])) << y;
}

TEST(TrainCommand, AKeptPatternFindsWhatTheFreshOneFinds) {
  const TempFolder folder;
  WriteBracketPattern(folder / "pattern.png");
  WriteBracketScene(folder / "scene.png", kPose);
  RunOrvandel({"train", folder / "pattern.png", "--save", folder / "part"});
  const ToolRun fresh =
      RunOrvandel({"find", folder / "pattern.png", folder / "scene.png", "--json"});
  const ToolRun kept =
      RunOrvandel({"find", "--knowledge", folder / "part", folder / "scene.png", "--json"});
  ASSERT_EQ(fresh.exit_code, 0) << fresh.err;
  ASSERT_EQ(kept.exit_code, 0) << kept.err;
  Json expected = Json::parse(fresh.out)["results"][0];
  Json result = Json::parse(kept.out)["results"][0];
  expected.erase("time_ms");
  result.erase("time_ms");
  EXPECT_EQ(result, expected);
}

TEST(TrainCommand, KeepsACutOut) {
  const TempFolder folder;
  WriteBracketScene(folder / "scene.png", {.x = 319.5, .y = 239.5});
  const ToolRun run = RunOrvandel({"train", folder / "scene.png", "--pattern-rect",
                                   "210,150,220,180", "--save", folder / "part"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const ImagePtr kept = ReadBack(folder / "part_qrsi.bmp");
  const ImagePtr scene = ReadBack(folder / "scene.png");
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->width, 220);
  EXPECT_EQ(kept->height, 180);
  EXPECT_EQ(kept->row[40][33], scene->row[150 + 40][210 + 33]);
}

TEST(TrainCommand, APatternWithoutContoursIsRefused) {
  const TempFolder folder;
  WriteFlatPicture(folder / "flat.png", 80, 60);
  const ToolRun run = RunOrvandel({"train", folder / "flat.png", "--save", folder / "part"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  EXPECT_TRUE(Contains(run.err, "flat.png: no contour in the pattern")) << run.err;
  EXPECT_TRUE(Contains(run.err, "--edge-threshold")) << run.err;
  EXPECT_TRUE(Contains(run.err, "--min-contour")) << run.err;
  EXPECT_FALSE(FileExists(folder / "part_qrsi.bmp"));
}

TEST(TrainCommand, APatternWithoutStraightEdgesIsRefused) {
  const TempFolder folder;
  WriteDisc(folder / "disc.png", 8);
  const ToolRun run = RunOrvandel({"train", folder / "disc.png", "--save", folder / "part"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  EXPECT_TRUE(Contains(run.err, "disc.png: no straight edge in the pattern")) << run.err;
  EXPECT_FALSE(FileExists(folder / "part_qrsi.bmp"));
}

TEST(TrainCommand, AFailureLeavesAnOlderFileWhole) {
  const TempFolder folder;
  WriteFlatPicture(folder / "flat.png", 80, 60);
  WriteTextFile(folder / "part_qrsi.bmp", "older");
  EXPECT_EQ(RunOrvandel({"train", folder / "flat.png", "--save", folder / "part"}).exit_code, 2);
  EXPECT_EQ(ReadFile(folder / "part_qrsi.bmp"), "older");
}

TEST(TrainCommand, AMissingFolderIsNamed) {
  const TempFolder folder;
  WriteBracketPattern(folder / "pattern.png");
  const ToolRun run =
      RunOrvandel({"train", folder / "pattern.png", "--save", folder / "nowhere/part"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(Contains(run.err, "there is no folder")) << run.err;
}

TEST(Knowledge, WhatCannotBeReadIsAnError) {
  const TempFolder folder;
  WriteBracketScene(folder / "scene.png", kPose);
  WriteTextFile(folder / "text_qrsi.bmp", "no picture");
  WriteFlatPicture(folder / "flat_qrsi.bmp", 80, 60);
  WriteDisc(folder / "disc_qrsi.bmp", 8);
  const auto error_of = [&](const char* name) {
    const ToolRun run = RunOrvandel({"find", "--knowledge", folder / name, folder / "scene.png"});
    EXPECT_EQ(run.exit_code, 2) << name;
    EXPECT_EQ(run.out, "") << name;
    EXPECT_EQ(NumLines(run.err), 1) << run.err;
    return run.err;
  };
  EXPECT_TRUE(Contains(error_of("missing"), "missing_qrsi.bmp: no such file"));
  EXPECT_TRUE(Contains(error_of("text"), "text_qrsi.bmp: not a picture"));
  EXPECT_TRUE(Contains(error_of("flat"), "flat_qrsi.bmp: no contour in the pattern"));
  EXPECT_TRUE(Contains(error_of("disc"), "disc_qrsi.bmp: no straight edge in the pattern"));
}

}  // namespace
}  // namespace orvandel::cli::test
