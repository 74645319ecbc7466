#include "shape/search/scoring.h"

#include <gtest/gtest.h>

namespace orvandel::shape {
namespace {

TEST(ScoreAboveChance, OfNothingIsNothing) {
  for (const double chance : {0.0, 0.05, 0.13, 0.5, 0.92})
    EXPECT_EQ(ScoreAboveChance(0.0, chance), 0.0);
}

TEST(ScoreAboveChance, OfAPerfectFitIsOne) {
  for (const double chance : {0.0, 0.13, 0.5, 0.92})
    EXPECT_EQ(ScoreAboveChance(1.0, chance), 1.0);
}

TEST(ScoreAboveChance, RisesWithTheFitAndFallsWithWhatChanceReaches) {
  for (double raw = 0.2; raw < 0.99; raw += 0.1) {
    EXPECT_GT(ScoreAboveChance(raw + 0.01, 0.1), ScoreAboveChance(raw, 0.1));
    EXPECT_LT(ScoreAboveChance(raw, 0.15), ScoreAboveChance(raw, 0.1));
  }
}

TEST(RawScoreOf, IsTheWayBack) {
  for (const double chance : {0.0, 0.13, 0.4}) {
    for (const double raw : {0.6, 0.8, 1.0})
      EXPECT_NEAR(RawScoreOf(ScoreAboveChance(raw, chance), chance), raw, 1e-12);
  }
}

}  // namespace
}  // namespace orvandel::shape
