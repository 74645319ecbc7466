#include "evaluation/suite_summary.h"

#include <array>
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

TEST(Summary, CountsInstances) {
  Finding both = FindingAt(Shifted(kInstance, 1));
  both.matches.push_back({Shifted(kInstance, 103), 85, true});
  both.matches.push_back({Shifted(kInstance, 200), 84, true});
  const std::vector<CaseResult> results = {
      Judge("suite", CaseWith({kInstance, Shifted(kInstance, 100)}), both, kFrame),
      Judge("suite", CaseWith({}), FindingAt(kInstance), kFrame), JudgeShift(2, /*score=*/30)};
  const SuiteSummary summary = Summarize("suite", results);
  EXPECT_EQ(summary.num_instances, 3);
  EXPECT_EQ(summary.num_instances_found, 2);
  EXPECT_EQ(summary.num_instances_false, 2);
  EXPECT_NEAR(summary.instance_corner_px.median, 2, 1e-9);  // of 1 and 3
}

TEST(Summary, AFullCirclesAngleCountsForNothing) {
  TestCase disc = CaseWith({kInstance});
  disc.params.symmetry.fold = 0;
  Finding turned = FindingAt(kInstance);
  turned.matches[0].scene_from_pattern.angle += 1;
  const std::vector<CaseResult> results = {Judge("suite", disc, turned, kFrame)};
  const SuiteSummary summary = Summarize("suite", results);
  EXPECT_EQ(summary.num_found, 1);
  EXPECT_TRUE(std::isnan(summary.angle_deg.median));
}

TEST(Summary, CountsTruthsInsideTheEllipsoid) {
  const auto judged = [](double dx) {
    Finding finding = FindingAt(Shifted(kInstance, dx));
    finding.matches[0].covariance = std::array<double, 16>{};
    for (const std::size_t i : {0u, 5u, 10u, 15u})
      (*finding.matches[0].covariance)[i] = 0.01;
    return Judge("suite", CaseWith({kInstance}), finding, kFrame);
  };
  // Of four values, 95 % lie within sqrt(9.488) = 3.08 deviations.
  const std::vector<CaseResult> results = {judged(0.1), judged(0.307), judged(0.309),
                                           JudgeShift(1)};
  const SuiteSummary summary = Summarize("suite", results);
  EXPECT_EQ(summary.num_with_covariance, 3);
  EXPECT_EQ(summary.num_inside_95, 2);
}

TEST(Summary, WithoutFindsHasNoErrors) {
  const std::vector<CaseResult> results = {JudgeShift(40)};
  EXPECT_TRUE(std::isnan(Summarize("suite", results).corner_px.median));
}

}  // namespace
}  // namespace orvandel::evaluation::test
