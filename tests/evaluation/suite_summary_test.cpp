#include "evaluation/suite_summary.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/evaluation/case_results.h"

namespace orvandel::evaluation::test {
namespace {

TEST(Summary, CountsWhatWasFoundWhereAndWhereNot) {
  const std::vector<CaseResult> results = {
      JudgeShift(1),                // found and accepted
      JudgeShift(2),                // found and accepted
      JudgeShift(4, /*score=*/30),  // found, below the accept score
      JudgeShift(40),               // accepted at a wrong place
      JudgeShift(40, /*score=*/30),
      Judge("suite", CaseWith({}), FindingAt(kInstance), kFrame),      // a false find
      Judge("suite", CaseWith({}), FindingAt(kInstance, 30), kFrame),  // rightly refused
      Unusable("suite", CaseWith({kInstance})),
  };
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
}  // namespace orvandel::evaluation::test
