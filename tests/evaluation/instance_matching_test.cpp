#include "evaluation/instance_matching.h"

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "tests/evaluation/case_results.h"

namespace orvandel::evaluation::test {
namespace {

constexpr Tolerance kScaled = {.is_scaled = true};

Match At(double x, double angle = 0) {
  return {.scene_from_pattern = {x, 100, angle, 1}, .score = 90, .is_accepted = true};
}

Similarity TrueAt(double x) {
  return {x, 100, 0, 1};
}

TEST(InstanceMatching, EveryInstanceIsFoundByTheMatchAtIt) {
  const Match matches[] = {At(301), At(102)};
  const Similarity instances[] = {TrueAt(100), TrueAt(200), TrueAt(300)};
  const auto matched = MatchInstances(matches, instances, kFrame, {}, kScaled);
  ASSERT_EQ(matched.size(), 2u);
  EXPECT_EQ(matched[0].value().instance, 2u);
  EXPECT_EQ(matched[1].value().instance, 0u);
  EXPECT_NEAR(matched[1].value().error.corner_px, 2, 1e-12);
}

TEST(InstanceMatching, OfTwoMatchesAtOneInstanceTheFartherIsFalse) {
  const Match matches[] = {At(102), At(101)};
  const Similarity instances[] = {TrueAt(100)};
  const auto matched = MatchInstances(matches, instances, kFrame, {}, kScaled);
  EXPECT_FALSE(matched[0]);
  EXPECT_TRUE(matched[1]);
}

TEST(InstanceMatching, AMatchThatLosesAnInstanceMayTakeTheNext) {
  // Both are nearest to the instance at 100; the one at 101.6 is also 2.4 from that at 104.
  const Match matches[] = {At(101.6), At(100.5)};
  const Similarity instances[] = {TrueAt(100), TrueAt(104)};
  const auto matched = MatchInstances(matches, instances, kFrame, {}, kScaled);
  EXPECT_EQ(matched[0].value().instance, 1u);
  EXPECT_EQ(matched[1].value().instance, 0u);
}

TEST(InstanceMatching, AMatchAtTheToleranceIsFalse) {
  // The diagonal of 3 x 4 is 5 pixels, so that 1.5 counts.
  constexpr PatternFrame kSmall = {4, 3, {1.5, 1}};
  const Similarity instances[] = {TrueAt(100)};
  const Match at_it[] = {At(101.5)};
  const Match below_it[] = {At(101.49)};
  EXPECT_FALSE(MatchInstances(at_it, instances, kSmall, {}, kScaled)[0]);
  EXPECT_TRUE(MatchInstances(below_it, instances, kSmall, {}, kScaled)[0]);
}

TEST(InstanceMatching, TheOtherToleranceIsFivePercentWhateverTheScale) {
  const Similarity instances[] = {{100, 100, 0, 0.5}};
  const Match four_off[] = {{.scene_from_pattern = {104, 100, 0, 0.5}, .is_accepted = true}};
  EXPECT_TRUE(MatchInstances(four_off, instances, kFrame, {}, Tolerance{})[0]);
  EXPECT_FALSE(MatchInstances(four_off, instances, kFrame, {}, kScaled)[0]);
}

TEST(InstanceMatching, SymmetryAndFitAreAllowedFor) {
  const Similarity instances[] = {TrueAt(100)};
  const Match half_a_turn[] = {At(100, kPi)};
  EXPECT_FALSE(MatchInstances(half_a_turn, instances, kFrame, {}, kScaled)[0]);
  EXPECT_TRUE(MatchInstances(half_a_turn, instances, kFrame, Symmetry{2}, kScaled)[0]);
  const Match four_off[] = {At(104)};
  EXPECT_FALSE(MatchInstances(four_off, instances, kFrame, {}, kScaled)[0]);
  EXPECT_TRUE(MatchInstances(four_off, instances, kFrame, {}, Tolerance{true, 1.2})[0]);
}

TEST(InstanceMatching, WithoutInstancesEveryMatchIsFalse) {
  const Match matches[] = {At(100), At(200)};
  for (const auto& matched : MatchInstances(matches, {}, kFrame, {}, kScaled))
    EXPECT_FALSE(matched);
  EXPECT_TRUE(MatchInstances({}, {}, kFrame, {}, kScaled).empty());
}

}  // namespace
}  // namespace orvandel::evaluation::test
