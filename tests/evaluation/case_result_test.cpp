#include "evaluation/case_result.h"

#include <gtest/gtest.h>

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

TEST(Unusable, IsNeitherFoundNorAccepted) {
  const CaseResult result = Unusable("suite", CaseWith({kInstance}));
  EXPECT_TRUE(result.is_present);
  EXPECT_FALSE(result.finding);
  EXPECT_FALSE(result.is_found);
  EXPECT_FALSE(result.IsAccepted());
}

}  // namespace
}  // namespace orvandel::evaluation::test
