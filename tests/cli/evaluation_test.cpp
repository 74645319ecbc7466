#include "cli/evaluation.h"

#include <cmath>

#include <gtest/gtest.h>

#include "base/rounding.h"

namespace orvandel::cli::test {
namespace {

constexpr int kWidth = 80;
constexpr int kHeight = 60;  // diagonal 100, so finds are off by less than 5 pixels

FindResult ResultAt(const Pose& pose, double score = 95) {
  FindResult result;
  result.status = score >= 80 ? FindStatus::kFound : FindStatus::kBelowAcceptScore;
  result.pose = pose;
  result.score = score;
  result.time_ms = 7;
  return result;
}

Pose Shifted(Pose pose, double dx) {
  pose.position.x += dx;
  return pose;
}

const TrueInstance kInstance = {.cx = 200, .cy = 150, .angle_deg = 30, .scale = 1};

TestCase CaseWith(std::vector<TrueInstance> instances) {
  return {"case", "pattern.png", "scene.png", std::move(instances)};
}

CaseResult JudgeShift(double dx, double score = 95) {
  const Pose truth = PoseOf(kInstance, kWidth, kHeight);
  return Judge("suite", CaseWith({kInstance}), ResultAt(Shifted(truth, dx), score), kWidth,
               kHeight);
}

TEST(PoseError, AShiftMovesEveryCorner) {
  const Pose truth = PoseOf(kInstance, kWidth, kHeight);
  const PoseError error = ErrorOf(Shifted(truth, 3), truth, kWidth, kHeight);
  EXPECT_NEAR(error.corner_px, 3, 1e-12);
  EXPECT_NEAR(error.angle_deg, 0, 1e-12);
  EXPECT_NEAR(error.scale_percent, 0, 1e-12);
}

TEST(PoseError, AScaleMovesEachCornerByItsShareOfTheHalfDiagonal) {
  const Pose truth = PoseOf(kInstance, kWidth, kHeight);
  Pose larger = truth;
  larger.scale = 1.02;
  const PoseError error = ErrorOf(larger, truth, kWidth, kHeight);
  EXPECT_NEAR(error.corner_px, 0.02 * 50, 1e-12);
  EXPECT_NEAR(error.scale_percent, 2, 1e-9);
}

TEST(PoseError, ATurnMovesEachCornerByTheChord) {
  const Pose truth = PoseOf(kInstance, kWidth, kHeight);
  Pose turned = truth;
  turned.angle += 0.01;
  const PoseError error = ErrorOf(turned, truth, kWidth, kHeight);
  EXPECT_NEAR(error.corner_px, 2 * 50 * std::sin(0.005), 1e-12);
  EXPECT_NEAR(error.angle_deg, 0.01 * 180 / kPi, 1e-9);
}

TEST(PoseError, AnglesAreComparedAroundTheCircle) {
  Pose truth = PoseOf(kInstance, kWidth, kHeight);
  truth.angle = kPi - 0.01;
  Pose found = truth;
  found.angle = -kPi + 0.01;
  EXPECT_NEAR(ErrorOf(found, truth, kWidth, kHeight).angle_deg, 0.02 * 180 / kPi, 1e-9);
}

TEST(PoseError, DoesNotDependOnTheReferencePoint) {
  const Pose truth = PoseOf(kInstance, kWidth, kHeight);
  Pose found = truth;  // the same pose, told by where another point lands
  found.reference = {10, 20};
  found.position = truth * found.reference;
  EXPECT_NEAR(ErrorOf(found, truth, kWidth, kHeight).corner_px, 0, 1e-12);
}

TEST(Judge, AFindIsOffByLessThanFivePercentOfTheDiagonal) {
  EXPECT_TRUE(JudgeShift(4.99).is_found);
  EXPECT_FALSE(JudgeShift(5.01).is_found);
}

TEST(Judge, AFindDoesNotDependOnTheScore) {
  EXPECT_TRUE(JudgeShift(1, /*score=*/20).is_found);
  EXPECT_FALSE(JudgeShift(1, /*score=*/20).IsAccepted());
}

TEST(Judge, TheNearestInstanceCounts) {
  TrueInstance other = kInstance;
  other.cx += 100;
  const Pose at_other = PoseOf(other, kWidth, kHeight);
  const CaseResult result =
      Judge("suite", CaseWith({kInstance, other}), ResultAt(Shifted(at_other, 2)), kWidth, kHeight);
  EXPECT_TRUE(result.is_found);
  EXPECT_NEAR(result.error->corner_px, 2, 1e-9);
}

TEST(Judge, WithoutAPoseThereIsNoErrorToMeasure) {
  FindResult nothing;
  nothing.status = FindStatus::kNoContours;
  const CaseResult result = Judge("suite", CaseWith({kInstance}), nothing, kWidth, kHeight);
  EXPECT_TRUE(result.is_present);
  EXPECT_FALSE(result.is_found);
  EXPECT_FALSE(result.error);
}

TEST(Summary, CountsWhatWasFoundWhereAndWhereNot) {
  const Pose anywhere = PoseOf(kInstance, kWidth, kHeight);
  std::vector<CaseResult> results = {
      JudgeShift(1),                // found and accepted
      JudgeShift(2),                // found and accepted
      JudgeShift(4, /*score=*/30),  // found, below the accept score
      JudgeShift(40),               // accepted at a wrong place
      JudgeShift(40, /*score=*/30),
      Judge("suite", CaseWith({}), ResultAt(anywhere), kWidth, kHeight),      // a false find
      Judge("suite", CaseWith({}), ResultAt(anywhere, 30), kWidth, kHeight),  // rightly refused
  };
  CaseResult unusable;
  unusable.is_present = true;
  results.push_back(unusable);

  const SuiteSummary summary = Summarize("suite", results);
  EXPECT_EQ(summary.num_cases, 8);
  EXPECT_EQ(summary.num_present, 6);
  EXPECT_EQ(summary.num_found, 3);
  EXPECT_EQ(summary.num_accepted, 2);
  EXPECT_EQ(summary.num_misplaced, 1);
  EXPECT_EQ(summary.num_absent, 2);
  EXPECT_EQ(summary.num_false_finds, 1);
  EXPECT_NEAR(summary.corner_px.median, 2, 1e-9);
  EXPECT_NEAR(summary.corner_px.p90, 3.6, 1e-9);  // of 1, 2, 4: 0.8 of the way from 2 to 4
  EXPECT_EQ(summary.time_ms.median, 7);
}

TEST(Summary, WithoutFindsHasNoErrors) {
  const std::vector<CaseResult> results = {JudgeShift(40)};
  EXPECT_TRUE(std::isnan(Summarize("suite", results).corner_px.median));
}

}  // namespace
}  // namespace orvandel::cli::test
