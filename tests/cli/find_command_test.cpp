#include <cmath>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "base/rounding.h"
#include "evaluation/csv.h"
#include "evaluation/pose_error.h"
#include "tests/cli/test_images.h"
#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {

using evaluation::SplitCsvLine;

namespace {

using Json = nlohmann::json;

constexpr render::Pose kPose = {.x = 301.3, .y = 244.8, .angle_deg = 137, .scale = 1.1};

// Where the image's own pattern point `reference` lies at the pose.
Point TruePosition(const render::Pose& pose, Point reference) {
  const Similarity scene_from_pattern = {pose.x, pose.y, evaluation::Radians(pose.angle_deg),
                                         pose.scale};
  const Point centre = {(kBracketWidth - 1) / 2.0, (kBracketHeight - 1) / 2.0};
  return scene_from_pattern * (reference - centre);
}

class FindBySegments : public testing::Test {
 protected:
  FindBySegments() {
    WriteBracketPattern(pattern_);
    WriteBracketScene(scene_, kPose);
  }

  ScratchFolder folder_;
  std::string pattern_ = folder_.File("pattern.png");
  std::string scene_ = folder_.File("scene.png");
};

TEST_F(FindBySegments, TellsThePose) {
  const ToolRun run = RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--json"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const Json document = Json::parse(run.out);
  const Json& result = document["results"].at(0);
  EXPECT_EQ(result["scene"], scene_);
  EXPECT_EQ(result["status"], "found");
  EXPECT_EQ(result["found"], true);

  // The pose comes from one pair of straight edges of about 100 pixels, each fitted to a few
  // hundredths of a pixel, and a refinement that ends with steps of 0.08 pixel and 0.0008 in scale.
  const Point reference = {document["pattern"]["reference_x"], document["pattern"]["reference_y"]};
  const Point truth = TruePosition(kPose, reference);
  EXPECT_NEAR(result["x"], truth.x, 1.0);
  EXPECT_NEAR(result["y"], truth.y, 1.0);
  EXPECT_NEAR(result["angle_deg"], kPose.angle_deg, 0.5);
  EXPECT_NEAR(result["angle_rad"].get<double>() * 180 / kPi, result["angle_deg"], 1e-9);
  EXPECT_NEAR(result["scale"], kPose.scale, 0.01);
  EXPECT_GE(result["score"], 80);
  EXPECT_LE(result["score"], 100);
  EXPECT_GT(result["time_ms"], 0);
}

TEST_F(FindBySegments, TextHasAHeadAndALinePerScene) {
  const ToolRun run = RunOrvandel({"find", "--engine", "segments", pattern_, scene_});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(NumLines(run.out), 2) << run.out;
  EXPECT_TRUE(Contains(run.out, "angle deg"));
  EXPECT_TRUE(Contains(run.out, "found"));
}

TEST_F(FindBySegments, CsvHasAFieldForEveryColumn) {
  WriteFlatImage(folder_.File("a, flat one.png"), 64, 64);
  const ToolRun run = RunOrvandel(
      {"find", "--engine", "segments", "--csv", pattern_, scene_, folder_.File("a, flat one.png")});
  EXPECT_EQ(run.exit_code, 1);
  std::istringstream lines(run.out);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(line, "scene,status,found,x,y,angle_deg,angle_rad,scale,score,time_ms");
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(SplitCsvLine(line).size(), 10u) << line;
  EXPECT_EQ(SplitCsvLine(line)[1], "found");
  ASSERT_TRUE(std::getline(lines, line));
  const std::vector<std::string> flat = SplitCsvLine(line);
  ASSERT_EQ(flat.size(), 10u) << line;
  EXPECT_EQ(flat[0], folder_.File("a, flat one.png"));
  EXPECT_EQ(flat[1], "no_contours");
  EXPECT_EQ(flat[3], "");
}

TEST_F(FindBySegments, NotFoundInOneSceneIsExitCodeOne) {
  WriteOtherScene(folder_.File("other.png"));
  const ToolRun run = RunOrvandel(
      {"find", "--engine", "segments", pattern_, scene_, folder_.File("other.png"), "--json"});
  EXPECT_EQ(run.exit_code, 1);
  const Json results = Json::parse(run.out)["results"];
  EXPECT_EQ(results.at(0)["found"], true);
  EXPECT_EQ(results.at(1)["found"], false);
  EXPECT_EQ(results.at(1)["status"], "below_accept_score");
  EXPECT_LT(results.at(1)["score"], 80);
}

TEST_F(FindBySegments, SaysWhyThereIsNoPose) {
  WriteFlatImage(folder_.File("flat.png"), 64, 64);
  WriteDisc(folder_.File("disc.png"), 8);
  const ToolRun run = RunOrvandel({"find", "--engine", "segments", pattern_,
                                   folder_.File("flat.png"), folder_.File("disc.png"), "--json"});
  EXPECT_EQ(run.exit_code, 1);
  const Json results = Json::parse(run.out)["results"];
  EXPECT_EQ(results.at(0)["status"], "no_contours");
  EXPECT_TRUE(results.at(0)["x"].is_null());
  EXPECT_TRUE(results.at(0)["score"].is_null());
  EXPECT_EQ(results.at(1)["status"], "no_lines");
}

TEST_F(FindBySegments, WithoutTimeNothingIsFound) {
  const ToolRun run =
      RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--json", "--timeout", "0"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(Json::parse(run.out)["results"].at(0)["status"], "timed_out");
  EXPECT_TRUE(Contains(
      RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--timeout", "0"}).out,
      "longer --timeout"));
}

TEST_F(FindBySegments, TheAcceptScoreDecidesWhatIsFound) {
  render::Pose half_outside = kPose;
  half_outside.x = 0;
  WriteBracketScene(folder_.File("half.png"), half_outside);
  const auto exit_code = [&](const char* accept_score) {
    return RunOrvandel({"find", "--engine", "segments", pattern_, folder_.File("half.png"),
                        "--accept-score", accept_score})
        .exit_code;
  };
  EXPECT_EQ(exit_code("20"), 0);
  EXPECT_EQ(exit_code("100"), 1);
}

TEST_F(FindBySegments, TheScaleRangeExcludesOtherSizes) {
  // The refinement moves a scale by 0.2 at most, so 1.1 stays out of reach.
  const ToolRun run =
      RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--json", "--scale", "1.5,3"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(
      RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--scale", "1,1.2"}).exit_code,
      0);
}

TEST_F(FindBySegments, APatternCanBeCutOutOfAnImage) {
  // The bracket lies unrotated in the middle of this image, so its pattern image is that part.
  const render::Pose unrotated = {.x = 319.5, .y = 239.5};
  WriteBracketScene(folder_.File("unrotated.png"), unrotated);
  const ToolRun run = RunOrvandel({"find", "--engine", "segments", folder_.File("unrotated.png"),
                                   scene_, "--json", "--pattern-rect", "210,150,220,180"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const Json document = Json::parse(run.out);
  EXPECT_EQ(document["pattern"]["width"], kBracketWidth);
  EXPECT_EQ(document["pattern"]["height"], kBracketHeight);
  const Point reference = {document["pattern"]["reference_x"], document["pattern"]["reference_y"]};
  const Point truth = TruePosition(kPose, reference);
  EXPECT_NEAR(document["results"].at(0)["x"], truth.x, 1.0);
  EXPECT_NEAR(document["results"].at(0)["y"], truth.y, 1.0);
}

TEST_F(FindBySegments, ACutOutMustLieInsideTheImage) {
  const ToolRun run = RunOrvandel(
      {"find", "--engine", "segments", pattern_, scene_, "--pattern-rect", "100,100,220,180"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(Contains(run.err, "220 x 180")) << run.err;
}

TEST_F(FindBySegments, TheEdgeThresholdCanBeEstimated) {
  const ToolRun run = RunOrvandel(
      {"find", "--engine", "segments", pattern_, scene_, "--json", "--edge-threshold", "auto"});
  ASSERT_NE(run.exit_code, 2) << run.err;
  const int threshold = Json::parse(run.out)["options"]["edge_threshold"];
  EXPECT_GE(threshold, 1);
  EXPECT_LE(threshold, 252);
}

TEST_F(FindBySegments, OneUnusableSceneDoesNotStopTheOthers) {
  WriteBytes(folder_.File("broken.png"), "this is no image");
  const ToolRun run =
      RunOrvandel({"find", "--engine", "segments", pattern_, folder_.File("broken.png"),
                   folder_.File("missing.png"), scene_, "--json"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(NumLines(run.err), 2) << run.err;
  EXPECT_TRUE(Contains(run.err, "broken.png: ")) << run.err;
  EXPECT_TRUE(Contains(run.err, "missing.png: no such file")) << run.err;
  const Json results = Json::parse(run.out)["results"];
  ASSERT_EQ(results.size(), 3u);
  EXPECT_EQ(results.at(0)["status"], "unusable_scene");
  EXPECT_TRUE(Contains(results.at(1)["error"], "no such file"));
  EXPECT_EQ(results.at(2)["status"], "found");
}

TEST_F(FindBySegments, AReportGoesIntoAFile) {
  const ToolRun run = RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--csv",
                                   "--output", folder_.File("found.csv")});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(NumLines(Contents(folder_.File("found.csv"))), 2);
}

TEST_F(FindBySegments, AnOverlayShowsTheScene) {
  const ToolRun run = RunOrvandel(
      {"find", "--engine", "segments", pattern_, scene_, "--overlay", folder_.File("new/dir")});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  const ImagePtr overlay = ReadBack(folder_.File("new/dir/scene.overlay.png"));
  const ImagePtr scene = ReadBack(scene_);
  ASSERT_NE(overlay, nullptr);
  ASSERT_EQ(overlay->width, scene->width);
  ASSERT_EQ(overlay->height, scene->height);
  // Far from the bracket and the caption the scene is as it was.
  EXPECT_EQ(overlay->row[470][600], scene->row[470][600]);
  // At the reference point there is a mark of another colour than anything in the scene.
  const Json result =
      Json::parse(
          RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--json"}).out)["results"]
          .at(0);
  const auto column = static_cast<int>(std::lround(result["x"].get<double>()));
  const auto row = static_cast<int>(std::lround(result["y"].get<double>()));
  EXPECT_NE(overlay->row[row][column], scene->row[row][column]);
}

TEST_F(FindBySegments, OverlaysOfTheSameNameStandSideBySide) {
  std::filesystem::create_directories(folder_.Path() / "b");
  WriteBracketScene(folder_.File("b/Scene.png"), kPose);
  RunOrvandel({"find", "--engine", "segments", pattern_, scene_, folder_.File("b/Scene.png"),
               "--overlay", folder_.File("o")});
  EXPECT_TRUE(FileExists(folder_.File("o/scene.overlay.png")));
  EXPECT_TRUE(FileExists(folder_.File("o/Scene-2.overlay.png")));
}

TEST_F(FindBySegments, VerboseTellsWhatWasLearntAndConverted) {
  WriteColourImage(folder_.File("colour.ppm"), 90, 60);
  const ToolRun run = RunOrvandel(
      {"find", "--engine", "segments", pattern_, folder_.File("colour.ppm"), scene_, "--verbose"});
  EXPECT_TRUE(Contains(run.err, "220 x 180 pixels")) << run.err;
  EXPECT_TRUE(Contains(run.err, "colour.ppm: colour picture")) << run.err;
  EXPECT_FALSE(Contains(run.err, "scene.png: ")) << run.err;
  EXPECT_EQ(RunOrvandel({"find", "--engine", "segments", pattern_, folder_.File("colour.ppm")}).err,
            "");
}

TEST_F(FindBySegments, NamesOfAnyKindAreFiles) {
  for (const char* name : {"Stück 1.png", "train", "--odd.png"})
    WriteBracketScene(folder_.File(name), kPose);
  // The image library tells the kind of a file by its ending.
  const ToolRun run = RunOrvandel(
      {"find", "--engine", "segments", pattern_, folder_.File("Stück 1.png"), "--json"});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_EQ(Json::parse(run.out)["results"].at(0)["scene"], folder_.File("Stück 1.png"));
}

TEST_F(FindBySegments, ASceneMayBeCalledLikeACommand) {
  const ToolRun run = RunOrvandel({"find", "--engine", "segments", pattern_, "train", "lines"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, "train: no such file")) << run.err;
  EXPECT_TRUE(Contains(run.err, "lines: no such file")) << run.err;
}

TEST_F(FindBySegments, TheSameCallPrintsTheSamePose) {
  const auto pose = [&] {
    Json result =
        Json::parse(RunOrvandel({"find", "--engine", "segments", pattern_, scene_, "--json"})
                        .out)["results"][0];
    result.erase("time_ms");
    return result;
  };
  EXPECT_EQ(pose(), pose());
}

}  // namespace
}  // namespace orvandel::cli::test
