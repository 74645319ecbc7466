#include <algorithm>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

using Json = nlohmann::json;

constexpr render::Pose kTrainedPose = {.x = 330.1, .y = 220.6, .angle_deg = -35, .scale = 0.9};

TEST(TrainCommand, TellsWhatTheShapeEngineLearns) {
  const ScratchFolder folder;
  WriteBracketPattern(folder.File("pattern.png"));
  const ToolRun run = RunOrvandel({"train", folder.File("pattern.png")});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "220 x 180 pixels")) << run.out;
  EXPECT_TRUE(Contains(run.out, "(109.50, 89.50)")) << run.out;
  for (const char* fact :
       {"edge points", "smallest scale", "learnt in", "tracking", "chance score"})
    EXPECT_TRUE(Contains(run.out, fact)) << run.out;
}

TEST(TrainCommand, AnOverlayShowsTheEdgePoints) {
  const ScratchFolder folder;
  WriteBox(folder.File("box.png"), 80, 60, {.left = 20, .top = 15, .right = 60, .bottom = 45});
  const ToolRun run =
      RunOrvandel({"train", folder.File("box.png"), "--overlay", folder.File("o"), "--zoom", "4"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const ImagePtr overlay = ReadBack(folder.File("o/box.overlay.png"));
  ASSERT_NE(overlay, nullptr);
  ASSERT_EQ(overlay->width, 320);
  // The darkened box is 90 at most; a dot lies on its left side, and none beside it.
  const auto brightest_of_column = [&](int x) {
    int brightest = 0;
    for (int y = 80; y < 160; ++y)
      brightest = std::max<int>(brightest, overlay->row[y][x]);
    return brightest;
  };
  EXPECT_GT(brightest_of_column(4 * 20), 120);
  EXPECT_LE(brightest_of_column(4 * 30), 90);
}

TEST(TrainCommand, APatternWithoutEdgesIsRefusedAndNothingIsDrawn) {
  const ScratchFolder folder;
  WriteFlatImage(folder.File("flat.png"), 80, 60);
  const ToolRun run =
      RunOrvandel({"train", folder.File("flat.png"), "--overlay", folder.File("o")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  EXPECT_TRUE(Contains(run.err, "flat.png: The pattern image has too few edges")) << run.err;
  EXPECT_FALSE(FileExists(folder.File("o")));
}

TEST(TrainCommand, APatternWithoutStraightEdgesIsLearnt) {
  const ScratchFolder folder;
  WriteDisc(folder.File("disc.png"), 20);
  EXPECT_EQ(RunOrvandel({"train", folder.File("disc.png")}).exit_code, 0);
}

TEST(TrainSegments, AnOverlayShowsTheContours) {
  const ScratchFolder folder;
  WriteBox(folder.File("box.png"), 80, 60, {.left = 20, .top = 15, .right = 60, .bottom = 45});
  const ToolRun run = RunOrvandel({"train", "--engine", "segments", folder.File("box.png"),
                                   "--save", folder.File("box"), "--overlay", folder.File("o")});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const ImagePtr overlay = ReadBack(folder.File("o/box.overlay.png"));
  EXPECT_NE(overlay->row[30][20], overlay->row[30][30]);
}

TEST(TrainSegments, KeepsThePatternImage) {
  const ScratchFolder folder;
  WriteBracketPattern(folder.File("pattern.png"));
  const ToolRun run = RunOrvandel(
      {"train", "--engine", "segments", folder.File("pattern.png"), "--save", folder.File("part")});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "220 x 180 pixels")) << run.out;
  EXPECT_TRUE(Contains(run.out, folder.File("part_qrsi.bmp"))) << run.out;

  const ImagePtr kept = ReadBack(folder.File("part_qrsi.bmp"));
  const ImagePtr pattern = ReadBack(folder.File("pattern.png"));
  ASSERT_NE(kept, nullptr);
  ASSERT_EQ(kept->width, pattern->width);
  ASSERT_EQ(kept->height, pattern->height);
  for (int y = 0; y < kept->height; ++y)
    ASSERT_TRUE(std::equal(kept->row[y], kept->row[y] + kept->width, pattern->row[y])) << y;
}

TEST(TrainSegments, AKeptPatternFindsWhatTheFreshOneFinds) {
  const ScratchFolder folder;
  WriteBracketPattern(folder.File("pattern.png"));
  WriteBracketScene(folder.File("scene.png"), kTrainedPose);
  RunOrvandel(
      {"train", "--engine", "segments", folder.File("pattern.png"), "--save", folder.File("part")});
  const ToolRun fresh = RunOrvandel({"find", "--engine", "segments", folder.File("pattern.png"),
                                     folder.File("scene.png"), "--json"});
  const ToolRun kept = RunOrvandel({"find", "--engine", "segments", "--knowledge",
                                    folder.File("part"), folder.File("scene.png"), "--json"});
  ASSERT_EQ(fresh.exit_code, 0) << fresh.err;
  ASSERT_EQ(kept.exit_code, 0) << kept.err;
  Json expected = Json::parse(fresh.out)["results"][0];
  Json result = Json::parse(kept.out)["results"][0];
  expected.erase("time_ms");
  result.erase("time_ms");
  EXPECT_EQ(result, expected);
}

TEST(TrainSegments, KeepsACutOut) {
  const ScratchFolder folder;
  WriteBracketScene(folder.File("scene.png"), {.x = 319.5, .y = 239.5});
  const ToolRun run =
      RunOrvandel({"train", "--engine", "segments", folder.File("scene.png"), "--pattern-rect",
                   "210,150,220,180", "--save", folder.File("part")});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const ImagePtr kept = ReadBack(folder.File("part_qrsi.bmp"));
  const ImagePtr scene = ReadBack(folder.File("scene.png"));
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->width, 220);
  EXPECT_EQ(kept->height, 180);
  EXPECT_EQ(kept->row[40][33], scene->row[150 + 40][210 + 33]);
}

TEST(TrainSegments, APatternWithoutContoursIsRefused) {
  const ScratchFolder folder;
  WriteFlatImage(folder.File("flat.png"), 80, 60);
  const ToolRun run = RunOrvandel(
      {"train", "--engine", "segments", folder.File("flat.png"), "--save", folder.File("part")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  EXPECT_TRUE(Contains(run.err, "flat.png: no contour in the pattern")) << run.err;
  EXPECT_TRUE(Contains(run.err, "--edge-threshold")) << run.err;
  EXPECT_TRUE(Contains(run.err, "--min-contour")) << run.err;
  EXPECT_FALSE(FileExists(folder.File("part_qrsi.bmp")));
}

TEST(TrainSegments, APatternWithoutStraightEdgesIsRefused) {
  const ScratchFolder folder;
  WriteDisc(folder.File("disc.png"), 8);
  const ToolRun run = RunOrvandel(
      {"train", "--engine", "segments", folder.File("disc.png"), "--save", folder.File("part")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  EXPECT_TRUE(Contains(run.err, "disc.png: no straight edge in the pattern")) << run.err;
  EXPECT_FALSE(FileExists(folder.File("part_qrsi.bmp")));
}

TEST(TrainSegments, AFailureLeavesAnOlderFileWhole) {
  const ScratchFolder folder;
  WriteFlatImage(folder.File("flat.png"), 80, 60);
  WriteBytes(folder.File("part_qrsi.bmp"), "older");
  EXPECT_EQ(RunOrvandel({"train", "--engine", "segments", folder.File("flat.png"), "--save",
                         folder.File("part")})
                .exit_code,
            2);
  EXPECT_EQ(Contents(folder.File("part_qrsi.bmp")), "older");
}

TEST(TrainSegments, AMissingFolderIsNamed) {
  const ScratchFolder folder;
  WriteBracketPattern(folder.File("pattern.png"));
  const ToolRun run = RunOrvandel({"train", "--engine", "segments", folder.File("pattern.png"),
                                   "--save", folder.File("nowhere/part")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(Contains(run.err, "there is no folder")) << run.err;
}

TEST(Knowledge, WhatCannotBeReadIsAnError) {
  const ScratchFolder folder;
  WriteBracketScene(folder.File("scene.png"), kTrainedPose);
  WriteBytes(folder.File("text_qrsi.bmp"), "no image");
  WriteFlatImage(folder.File("flat_qrsi.bmp"), 80, 60);
  WriteDisc(folder.File("disc_qrsi.bmp"), 8);
  const auto error_of = [&](const char* name) {
    const ToolRun run = RunOrvandel({"find", "--engine", "segments", "--knowledge",
                                     folder.File(name), folder.File("scene.png")});
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
