#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

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

constexpr render::Pose kShapePose = {.x = 301.3, .y = 244.8, .angle_deg = 137, .scale = 1.1};

// Clean rendered scenes are found to a few hundredths of a pixel. A mix-up of pixel corners and
// centres would be 0.5.
constexpr double kPositionTolerance = 0.1;  // pixels
constexpr double kAngleTolerance = 0.1;     // degrees
constexpr double kScaleTolerance = 0.002;

void ExpectPose(const Json& match, const render::Pose& truth) {
  EXPECT_NEAR(match["x"], truth.x, kPositionTolerance);
  EXPECT_NEAR(match["y"], truth.y, kPositionTolerance);
  EXPECT_NEAR(match["angle_deg"], truth.angle_deg, kAngleTolerance);
  EXPECT_NEAR(match["angle_rad"].get<double>() * 180 / kPi, match["angle_deg"], 1e-9);
  EXPECT_NEAR(match["scale"], truth.scale, kScaleTolerance);
}

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

class FindCommand : public testing::Test {
 protected:
  FindCommand() {
    WriteBracketPattern(pattern_);
    WriteBracketScene(scene_, kShapePose);
  }

  // Of the bracket in its scene.
  ToolRun Find(std::vector<std::string> options) const {
    options.insert(options.begin(), {"find", pattern_, scene_});
    return RunOrvandel(options);
  }
  Json FindResult(std::vector<std::string> options) const {
    options.push_back("--json");
    return Json::parse(Find(options).out)["results"].at(0);
  }

  ScratchFolder folder_;
  std::string pattern_ = folder_.File("pattern.png");
  std::string scene_ = folder_.File("scene.png");
};

TEST_F(FindCommand, TellsThePose) {
  const ToolRun run = Find({"--json"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const Json document = Json::parse(run.out);
  EXPECT_EQ(document["engine"], "shapes");
  EXPECT_EQ(document["pattern"]["width"], kBracketWidth);
  EXPECT_EQ(document["pattern"]["reference_x"], (kBracketWidth - 1) / 2.0);
  EXPECT_EQ(document["pattern"]["reference_y"], (kBracketHeight - 1) / 2.0);
  const Json& result = document["results"].at(0);
  EXPECT_EQ(result["scene"], scene_);
  EXPECT_EQ(result["status"], "found");
  EXPECT_EQ(result["found"], true);
  EXPECT_EQ(result["timed_out"], false);
  EXPECT_GT(result["time_ms"], 0);
  ExpectPose(result, kShapePose);
  ASSERT_EQ(result["matches"].size(), 1u);
  ExpectPose(result["matches"].at(0), kShapePose);
}

TEST_F(FindCommand, TellsHowGoodAMatchIs) {
  const Json match = FindResult({})["matches"].at(0);
  EXPECT_GT(match["score"], 0.8);  // everything is there and in its place
  EXPECT_LE(match["score"], 1);
  EXPECT_GT(match["coverage"], 0.9);
  EXPECT_GE(match["clutter"], 0);
  EXPECT_LT(match["fit_error"], 0.5);
  EXPECT_NEAR(match["contrast"], 1, 0.2);  // the scene is lit as the pattern is
  EXPECT_EQ(match["polarity"], "same");
  EXPECT_EQ(match["share_outside"], 0);
}

TEST_F(FindCommand, TellsHowSureThePoseIs) {
  const Json match = FindResult({})["matches"].at(0);
  const Json& covariance = match["covariance"];
  ASSERT_EQ(covariance.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t k = 0; k < 4; ++k)
      EXPECT_NEAR(covariance.at(i).at(k), covariance.at(k).at(i),
                  1e-12 * std::sqrt(covariance.at(i).at(i).get<double>() *
                                    covariance.at(k).at(k).get<double>()))
          << i << k;
  }
  EXPECT_NEAR(match["sd_x"], std::sqrt(covariance.at(0).at(0).get<double>()), 1e-12);
  EXPECT_NEAR(match["sd_y"], std::sqrt(covariance.at(1).at(1).get<double>()), 1e-12);
  EXPECT_NEAR(match["sd_angle_deg"].get<double>() * kPi / 180,
              std::sqrt(covariance.at(2).at(2).get<double>()), 1e-12);
  EXPECT_NEAR(match["sd_scale"], std::sqrt(covariance.at(3).at(3).get<double>()), 1e-12);
  EXPECT_GT(match["sd_x"], 0);
  EXPECT_LT(match["sd_x"], kPositionTolerance);
}

TEST_F(FindCommand, TellsTheTimesOfTheStages) {
  const Json result = FindResult({});
  double sum = 0;
  for (const char* stage :
       {"pyramid", "response_maps", "coarse_search", "tracking", "refinement", "scoring"}) {
    EXPECT_GE(result["times_us"][stage], 0) << stage;
    sum += result["times_us"][stage].get<double>();
  }
  EXPECT_LE(sum, result["times_us"]["total"].get<double>() + 1);
  EXPECT_NEAR(result["times_us"]["total"].get<double>() / 1000, result["time_ms"], 1e-9);
}

TEST_F(FindCommand, TextHasAHeadAndALinePerMatch) {
  const ToolRun run = Find({});
  EXPECT_EQ(run.exit_code, 0);
  ASSERT_EQ(NumLines(run.out), 2) << run.out;
  const std::vector<std::string> lines = Lines(run.out);
  for (const char* head : {"angle deg", "angle rad", "score", "coverage", "sd px"})
    EXPECT_TRUE(Contains(lines[0], head)) << lines[0];
  EXPECT_EQ(lines[0].size(), lines[1].size()) << run.out;
  EXPECT_TRUE(Contains(lines[1], "found  ")) << lines[1];
  EXPECT_TRUE(Contains(lines[1], " 301.")) << lines[1];
}

TEST_F(FindCommand, CsvBeginsWithTheColumnsOfBothEnginesAndFillsAll) {
  WriteFlatImage(folder_.File("a, flat one.png"), 64, 64);
  const ToolRun run =
      RunOrvandel({"find", "--csv", pattern_, scene_, folder_.File("a, flat one.png")});
  EXPECT_EQ(run.exit_code, 1);
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(
      lines[0].rfind("scene,status,found,x,y,angle_deg,angle_rad,scale,score,time_ms,pattern,", 0),
      0u);
  const std::size_t num_columns = SplitCsvLine(lines[0]).size();
  const std::vector<std::string> found = SplitCsvLine(lines[1]);
  ASSERT_EQ(found.size(), num_columns);
  EXPECT_EQ(found[1], "found");
  EXPECT_NEAR(std::stod(found[3]), kShapePose.x, kPositionTolerance);
  EXPECT_NEAR(std::stod(found[6]) * 180 / kPi, kShapePose.angle_deg, kAngleTolerance);
  for (const std::string& field : found)
    EXPECT_NE(field, "");
  const std::vector<std::string> flat = SplitCsvLine(lines[2]);
  ASSERT_EQ(flat.size(), num_columns);
  EXPECT_EQ(flat[0], folder_.File("a, flat one.png"));
  EXPECT_EQ(flat[1], "not_found");
  EXPECT_EQ(flat[3], "");
}

TEST_F(FindCommand, SeveralInstancesAreFoundBestFirst) {
  const std::vector<render::Pose> poses = {
      {.x = 120.4, .y = 130.7, .angle_deg = 40, .scale = 0.8},
      {.x = 330.2, .y = 340.6, .angle_deg = -75, .scale = 1.2},
      {.x = 520.9, .y = 120.1, .angle_deg = 160, .scale = 0.9}};
  WriteBracketsScene(scene_, poses);
  const Json result = FindResult({"--max-matches", "0"});
  ASSERT_EQ(result["matches"].size(), poses.size());
  for (const render::Pose& pose : poses) {
    const auto is_it = [&](const Json& match) {
      return std::abs(match["x"].get<double>() - pose.x) < 9;
    };
    const auto found = std::find_if(result["matches"].begin(), result["matches"].end(), is_it);
    ASSERT_NE(found, result["matches"].end());
    ExpectPose(*found, pose);
  }
  EXPECT_GE(result["matches"].at(0)["score"], result["matches"].at(1)["score"]);
  EXPECT_GE(result["matches"].at(1)["score"], result["matches"].at(2)["score"]);
  EXPECT_EQ(result["x"], result["matches"].at(0)["x"]);
  EXPECT_EQ(FindResult({"--max-matches", "2"})["matches"].size(), 2u);

  const std::vector<std::string> lines = Lines(Find({"--max-matches", "0", "--csv"}).out);
  ASSERT_EQ(lines.size(), 4u);
  for (std::size_t i = 1; i <= 3; ++i)
    EXPECT_EQ(SplitCsvLine(lines[i])[11], std::to_string(i)) << lines[0];
}

TEST_F(FindCommand, ARoundPartIsFound) {
  const render::Pose cam = {.x = 360.6, .y = 230.3, .angle_deg = -48, .scale = 1.3};
  WriteMixedScene(scene_, {.x = 110, .y = 120}, cam);
  WriteCamPattern(pattern_);
  ExpectPose(FindResult({}), cam);
}

TEST_F(FindCommand, AllBitsOfADeepPictureAreSeen) {
  WriteDeepRings(pattern_, scene_, {88.3, 79.6});
  const ToolRun run = Find({"--json", "--verbose"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  EXPECT_FALSE(Contains(run.err, "converted")) << run.err;
  const Json result = Json::parse(run.out)["results"].at(0);
  EXPECT_NEAR(result["x"], 88.3, kPositionTolerance);
  EXPECT_NEAR(result["y"], 79.6, kPositionTolerance);
  EXPECT_NEAR(result["scale"], 1, 0.005);
  // With 8 bits there is nothing to see.
  EXPECT_EQ(RunOrvandel({"find", "--engine", "segments", pattern_, scene_}).exit_code, 2);
}

TEST_F(FindCommand, AFullCircleHasAnyAngle) {
  WriteDisc(pattern_, 20);
  WriteDisc(scene_, 22);
  const Json match = FindResult({})["matches"].at(0);
  // The disc's middle is pixel (32, 32) of both images, and half a pixel each way from the
  // pattern's reference point, which therefore lies anywhere on a circle around it.
  const double off = std::hypot(match["x"].get<double>() - 32, match["y"].get<double>() - 32);
  EXPECT_NEAR(off, 1.1 * std::hypot(0.5, 0.5), kPositionTolerance);
  EXPECT_NEAR(match["scale"], 1.1, 0.01);
  EXPECT_TRUE(match["sd_angle_deg"].is_null());
  EXPECT_TRUE(Contains(Find({}).out, " any ")) << Find({}).out;
}

TEST_F(FindCommand, SaysPlainlyThatNothingWasFound) {
  WriteOtherScene(folder_.File("other.png"));
  const ToolRun run = RunOrvandel({"find", pattern_, folder_.File("other.png")});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(Contains(run.out, "not_found")) << run.out;
  EXPECT_TRUE(Contains(run.out, "no place has a score of 0.36 or more")) << run.out;
  const ToolRun both = RunOrvandel({"find", pattern_, scene_, folder_.File("other.png"), "--json"});
  EXPECT_EQ(both.exit_code, 1);
  const Json results = Json::parse(both.out)["results"];
  EXPECT_EQ(results.at(0)["found"], true);
  EXPECT_EQ(results.at(1)["found"], false);
  EXPECT_EQ(results.at(1)["status"], "not_found");
  EXPECT_TRUE(results.at(1)["x"].is_null());
  EXPECT_TRUE(results.at(1)["matches"].empty());
}

TEST_F(FindCommand, AScoreMeansWhatItSays) {
  const double score = FindResult({})["score"];
  const auto exit_code = [&](double min_score) {
    return Find({"--min-score", Json(min_score).dump()}).exit_code;  // to the last digit
  };
  EXPECT_EQ(exit_code(score), 0);
  EXPECT_EQ(exit_code(std::nextafter(score, 2)), 1);
}

TEST_F(FindCommand, TheAngleRangeExcludesOtherAngles) {
  EXPECT_EQ(Find({"--angle", "100,170"}).exit_code, 0);
  EXPECT_EQ(Find({"--angle", "-260,-190"}).exit_code, 0);  // the same, a turn before
  EXPECT_EQ(Find({"--angle", "-20,20"}).exit_code, 1);
}

TEST_F(FindCommand, WhatIsFixedIsNotFitted) {
  const Json result = FindResult({"--angle", "137", "--scale", "1.1"});
  ASSERT_EQ(result["found"], true);
  ExpectPose(result, kShapePose);
  EXPECT_NEAR(result["angle_deg"], 137, 1e-6);
  EXPECT_NEAR(result["scale"], 1.1, 1e-9);
  EXPECT_EQ(result["matches"].at(0)["sd_angle_deg"], 0);
  EXPECT_EQ(result["matches"].at(0)["sd_scale"], 0);
}

TEST_F(FindCommand, TheScaleRangeExcludesOtherSizes) {
  EXPECT_EQ(Find({"--scale", "1.5,3"}).exit_code, 1);
  EXPECT_EQ(Find({"--scale", "1,1.2"}).exit_code, 0);
}

TEST_F(FindCommand, ThePolarityIsLookedForAndTold) {
  WriteReversedScene(scene_, kShapePose);
  EXPECT_EQ(Find({"--polarity", "same"}).exit_code, 1);
  for (const char* polarity : {"reversed", "either", "mixed"}) {
    const Json result = FindResult({"--polarity", polarity});
    ASSERT_EQ(result["found"], true) << polarity;
    EXPECT_EQ(result["matches"].at(0)["polarity"], "reversed") << polarity;
    ExpectPose(result, kShapePose);
  }
}

TEST_F(FindCommand, MatchesMayOverlapAsMuchAsAsked) {
  // Two brackets, one half over the other.
  WriteBracketsScene(scene_, {{.x = 300, .y = 240}, {.x = 360, .y = 280, .angle_deg = 90}});
  const auto num_found = [&](const char* overlap) {
    return FindResult({"--max-matches", "2", "--max-overlap", overlap})["matches"].size();
  };
  EXPECT_EQ(num_found("1"), 2u);
  EXPECT_EQ(num_found("0"), 1u);
}

TEST_F(FindCommand, APartBeyondTheBorderSaysHowMuchIsOutside) {
  WriteBracketScene(scene_, {.x = 30.4, .y = 240.2});
  const Json match = FindResult({})["matches"].at(0);
  EXPECT_NEAR(match["x"], 30.4, kPositionTolerance);
  EXPECT_GT(match["share_outside"], 0.1);
  EXPECT_LT(match["share_outside"], 0.6);
}

TEST_F(FindCommand, ATimeBudgetEndsTheSearch) {
  const Json result = FindResult({"--timeout", "1us"});
  EXPECT_EQ(result["timed_out"], true);
  const ToolRun run = Find({"--timeout", "1us"});
  EXPECT_TRUE(Contains(run.out, "longer --timeout")) << run.out;
  EXPECT_EQ(FindResult({"--timeout", "100s"})["timed_out"], false);
}

TEST_F(FindCommand, AnyNumberOfThreadsFindsTheSame) {
  const auto result = [&](const char* threads) {
    Json found = FindResult({"--threads", threads});
    found.erase("time_ms");
    found.erase("times_us");
    return found;
  };
  EXPECT_EQ(result("1"), result("3"));
}

TEST_F(FindCommand, APatternCanBeCutOutOfAnImage) {
  const render::Pose unrotated = {.x = 319.5, .y = 239.5};
  WriteBracketScene(folder_.File("unrotated.png"), unrotated);
  const ToolRun run = RunOrvandel({"find", folder_.File("unrotated.png"), scene_, "--json",
                                   "--pattern-rect", "210,150,220,180"});
  ASSERT_EQ(run.exit_code, 0) << run.err;
  ExpectPose(Json::parse(run.out)["results"].at(0), kShapePose);
}

TEST_F(FindCommand, APatternWithoutEdgesIsRefusedWithASentence) {
  WriteFlatImage(folder_.File("flat.png"), 80, 60);
  const ToolRun run = RunOrvandel({"find", folder_.File("flat.png"), scene_});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  EXPECT_TRUE(Contains(run.err, "flat.png: The pattern image has too few edges")) << run.err;
}

TEST_F(FindCommand, SeveralPatternsAreLookedForInEachScene) {
  const render::Pose cam = {.x = 460.6, .y = 230.3, .angle_deg = 70, .scale = 1.2};
  const render::Pose bracket = {.x = 160.2, .y = 240.9, .angle_deg = -20, .scale = 0.9};
  WriteMixedScene(folder_.File("both.png"), bracket, cam);
  WriteCamPattern(folder_.File("cam.png"));
  const std::vector<std::string> command = {"find",
                                            "--pattern",
                                            pattern_,
                                            "--pattern",
                                            folder_.File("cam.png"),
                                            scene_,
                                            folder_.File("both.png"),
                                            "--overlay",
                                            folder_.File("o")};
  std::vector<std::string> with_json = command;
  with_json.push_back("--json");
  const ToolRun run = RunOrvandel(with_json);
  EXPECT_EQ(run.exit_code, 1) << run.err;  // there is no cam in the first scene
  const Json document = Json::parse(run.out);
  ASSERT_EQ(document["patterns"].size(), 2u);
  EXPECT_EQ(document["patterns"].at(1)["file"], folder_.File("cam.png"));
  const Json& results = document["results"];
  ASSERT_EQ(results.size(), 4u);
  ExpectPose(results.at(0), kShapePose);
  EXPECT_EQ(results.at(1)["found"], false);
  EXPECT_EQ(results.at(1)["pattern"], folder_.File("cam.png"));
  ExpectPose(results.at(2), bracket);
  ExpectPose(results.at(3), cam);
  EXPECT_TRUE(FileExists(folder_.File("o/both.overlay.png")));
  const ToolRun text = RunOrvandel(command);
  EXPECT_TRUE(Contains(text.out, "cam.png")) << text.out;
  EXPECT_TRUE(Contains(text.out, "found in 3 of 4 searches")) << text.out;
}

TEST_F(FindCommand, SeveralPatternsCanBeLookedForBySegments) {
  const ToolRun run = RunOrvandel({"find", "--engine", "segments", "--pattern", pattern_,
                                   "--pattern", pattern_, scene_, "--csv"});
  EXPECT_EQ(run.exit_code, 0) << run.err;
  EXPECT_EQ(NumLines(run.out), 3) << run.out;
}

TEST_F(FindCommand, OneUnusableSceneDoesNotStopTheOthers) {
  WriteBytes(folder_.File("broken.png"), "this is no image");
  const ToolRun run = RunOrvandel({"find", pattern_, folder_.File("broken.png"), scene_, "--json"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  const Json results = Json::parse(run.out)["results"];
  ASSERT_EQ(results.size(), 2u);
  EXPECT_EQ(results.at(0)["status"], "unusable_scene");
  EXPECT_TRUE(results.at(0)["times_us"].is_null());
  EXPECT_EQ(results.at(1)["status"], "found");
}

TEST_F(FindCommand, ASceneBeyondTheEnginesSizeIsUnusable) {
  WriteBytes(folder_.File("wide.pgm"), "P5\n40000 6\n255\n" + std::string(40000 * 6, '\x40'));
  const ToolRun run = RunOrvandel({"find", pattern_, folder_.File("wide.pgm"), "--json"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_TRUE(Contains(run.err, "wide.pgm: The scene has more than")) << run.err;
  EXPECT_EQ(Json::parse(run.out)["results"].at(0)["status"], "unusable_scene");
}

// The grey value that a colour becomes when the image is read.
int GreyOf(int red, int green, int blue) {
  return static_cast<int>(std::lround(0.299 * red + 0.587 * green + 0.114 * blue));
}

TEST_F(FindCommand, AnOverlayShowsTheOutlineWhereThePartIs) {
  ASSERT_EQ(Find({"--overlay", folder_.File("new/dir")}).exit_code, 0);
  const ImagePtr overlay = ReadBack(folder_.File("new/dir/scene.overlay.png"));
  const ImagePtr scene = ReadBack(scene_);
  ASSERT_NE(overlay, nullptr);
  ASSERT_EQ(overlay->width, scene->width);
  EXPECT_EQ(overlay->row[470][620], scene->row[470][620]);  // far from the part
  // The lower side of the bracket runs along y = 74 of the part.
  constexpr int kGreen = 156;
  ASSERT_EQ(GreyOf(40, 230, 80), kGreen);
  for (const double along : {-50.0, -20.0, 20.0, 50.0}) {
    const Point at = kShapePose * Point{along, 74};
    const auto x = static_cast<int>(std::lround(at.x));
    const auto y = static_cast<int>(std::lround(at.y));
    // The line covers three quarters of the pixel at least, the rim below it is darker.
    EXPECT_NEAR(overlay->row[y][x], kGreen, 45) << along;
    EXPECT_GT(std::abs(overlay->row[y][x] - scene->row[y][x]), 20) << along;
  }
}

TEST_F(FindCommand, AnOverlayCanBeEnlarged) {
  ASSERT_EQ(Find({"--overlay", folder_.File("o"), "--zoom", "2"}).exit_code, 0);
  const ImagePtr overlay = ReadBack(folder_.File("o/scene.overlay.png"));
  ASSERT_NE(overlay, nullptr);
  EXPECT_EQ(overlay->width, 1280);
  EXPECT_EQ(overlay->height, 960);
}

TEST_F(FindCommand, AnOverlayWithoutAMatchHasARedFrame) {
  WriteOtherScene(scene_);
  ASSERT_EQ(Find({"--overlay", folder_.File("o")}).exit_code, 1);
  EXPECT_EQ(ReadBack(folder_.File("o/scene.overlay.png"))->row[479][320], GreyOf(240, 50, 50));
}

TEST_F(FindCommand, VerboseTellsWhatWasLearntAndTheTimes) {
  const ToolRun run = Find({"--verbose"});
  EXPECT_TRUE(Contains(run.err, "220 x 180 pixels")) << run.err;
  EXPECT_TRUE(Contains(run.err, "edge points")) << run.err;
  EXPECT_TRUE(Contains(run.err, "coarse search")) << run.err;
}

}  // namespace
}  // namespace orvandel::cli::test
