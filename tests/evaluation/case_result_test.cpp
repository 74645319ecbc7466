#include "evaluation/case_result.h"

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "tests/evaluation/case_results.h"

namespace orvandel::evaluation::test {
namespace {

TEST(Judge, AFindIsOffByLessThanFivePercentOfTheDiagonal) {
  EXPECT_TRUE(JudgeShift(4.99).is_found);
  EXPECT_FALSE(JudgeShift(5.01).is_found);
}

TEST(Judge, AFindDoesNotDependOnTheScore) {
  EXPECT_TRUE(JudgeShift(1, /*score=*/20).is_found);
  EXPECT_FALSE(JudgeShift(1, /*score=*/20).IsAccepted());
}

TEST(Judge, TheNearestInstanceCounts) {
  const Similarity other = Shifted(kInstance, 100);
  const CaseResult result =
      Judge("suite", CaseWith({kInstance, other}), FindingAt(Shifted(other, 2)), kFrame);
  EXPECT_TRUE(result.is_found);
  EXPECT_NEAR(result.error.value().corner_px, 2, 1e-9);
}

TEST(Judge, TheBestMatchCounts) {
  Finding finding = FindingAt(Shifted(kInstance, 40));
  finding.matches.push_back({kInstance, 90, true});
  EXPECT_FALSE(Judge("suite", CaseWith({kInstance}), finding, kFrame).is_found);
}

TEST(Judge, WithoutAMatchThereIsNoErrorToMeasure) {
  Finding nothing;
  nothing.status = "no_contours";
  const CaseResult result = Judge("suite", CaseWith({kInstance}), nothing, kFrame);
  EXPECT_TRUE(result.is_present);
  EXPECT_FALSE(result.is_found);
  EXPECT_FALSE(result.IsAccepted());
  EXPECT_FALSE(result.error);
}

TEST(Judge, SymmetryAndToleranceAreTheCases) {
  TestCase test_case = CaseWith({kInstance});
  Finding half_a_turn = FindingAt(Shifted(kInstance, 2));
  half_a_turn.matches[0].scene_from_pattern.angle += kPi;
  EXPECT_FALSE(Judge("suite", test_case, half_a_turn, kFrame).is_found);
  test_case.params.symmetry.fold = 2;
  EXPECT_TRUE(Judge("suite", test_case, half_a_turn, kFrame).is_found);
  const Finding four_off = FindingAt(Shifted(kInstance, 4));
  EXPECT_TRUE(Judge("suite", test_case, four_off, kFrame).is_found);
  test_case.params.tolerance.is_scaled = true;  // 3 pixels
  EXPECT_FALSE(Judge("suite", test_case, four_off, kFrame).is_found);
}

TEST(Judge, EveryInstanceIsCountedOnceAndTheRestIsFalse) {
  Finding finding = FindingAt(Shifted(kInstance, 1));
  finding.matches.push_back({Shifted(kInstance, 2), 85, true});     // the same one again
  finding.matches.push_back({Shifted(kInstance, 100), 84, true});   // the other instance
  finding.matches.push_back({Shifted(kInstance, 200), 83, true});   // nothing is there
  finding.matches.push_back({Shifted(kInstance, 300), 20, false});  // there is one, not accepted
  const TestCase test_case =
      CaseWith({kInstance, Shifted(kInstance, 100), Shifted(kInstance, 300)});
  const CaseResult result = Judge("suite", test_case, finding, kFrame);
  EXPECT_EQ(result.num_instances, 3);
  ASSERT_EQ(result.instance_errors.size(), 2u);
  EXPECT_NEAR(result.instance_errors[0].corner_px, 1, 1e-9);
  EXPECT_EQ(result.num_false, 2);
}

TEST(Judge, InAnAbsentCaseEveryAcceptedMatchIsFalse) {
  Finding finding = FindingAt(kInstance);
  finding.matches.push_back({Shifted(kInstance, 100), 85, true});
  const CaseResult result = Judge("suite", CaseWith({}), finding, kFrame);
  EXPECT_EQ(result.num_instances, 0);
  EXPECT_EQ(result.num_false, 2);
}

TEST(Unusable, IsNeitherFoundNorAccepted) {
  const CaseResult result = Unusable("suite", CaseWith({kInstance}));
  EXPECT_TRUE(result.is_present);
  EXPECT_FALSE(result.finding);
  EXPECT_FALSE(result.is_found);
  EXPECT_FALSE(result.IsAccepted());
}

}  // namespace
}  // namespace orvandel::evaluation::test
