#include "edges/gradient_tables.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/reference/sub_canny.h"

namespace orvandel::test {
namespace {

int DirectionCode(int gx, int gy) {
  return AcquireGradientTables()->direction[static_cast<std::size_t>((gy + 127) * 256 + gx + 127)];
}

int Magnitude(int a, int b) {
  return AcquireGradientTables()->magnitude[static_cast<std::size_t>(a * 256 + b)];
}

int SignedMagnitude(int gx, int gy) {
  return AcquireGradientTables()->SignedMagnitude(gx, gy);
}

TEST(DirectionTable, HalfAndQuarterTurnsByHand) {
  EXPECT_EQ(DirectionCode(1, 0), 0);
  EXPECT_EQ(DirectionCode(1, 1), 32);
  EXPECT_EQ(DirectionCode(0, 1), 64);
  EXPECT_EQ(DirectionCode(-1, 1), 96);
  EXPECT_EQ(DirectionCode(-1, 0), 128);
  EXPECT_EQ(DirectionCode(-1, -1), 160);
  EXPECT_EQ(DirectionCode(0, -1), 192);
  EXPECT_EQ(DirectionCode(1, -1), 224);
}

TEST(DirectionTable, NoGradientHasDirectionZero) {
  EXPECT_EQ(DirectionCode(0, 0), 0);
}

TEST(DirectionTable, CodesAreRoundedDownOnBothSidesOfTheAxes) {
  // atan(1 / 127) is 0.32 of a code.
  EXPECT_EQ(DirectionCode(127, 1), 0);
  EXPECT_EQ(DirectionCode(127, -1), 255);
  EXPECT_EQ(DirectionCode(-127, 1), 127);
  EXPECT_EQ(DirectionCode(-127, -1), 128);
  EXPECT_EQ(DirectionCode(1, 127), 63);
  EXPECT_EQ(DirectionCode(-1, -127), 191);
}

TEST(DirectionTable, LengthDoesNotMatter) {
  for (const int length : {1, 2, 60, 127}) {
    EXPECT_EQ(DirectionCode(length, length), 32) << length;
    EXPECT_EQ(DirectionCode(0, -length), 192) << length;
  }
}

TEST(DirectionTable, EveryEntryIsItsFormula) {
  for (int gy = -127; gy <= 127; ++gy) {
    for (int gx = -127; gx <= 127; ++gx)
      ASSERT_EQ(DirectionCode(gx, gy), ReferenceDirectionCode(gx, gy)) << gx << ' ' << gy;
  }
}

TEST(DirectionTable, KeepsItsGenerousBlock) {
  EXPECT_EQ(GradientTables::kDirectionBytes, 524288u);
}

TEST(MagnitudeTable, ValuesByHand) {
  EXPECT_EQ(Magnitude(0, 0), 0);
  EXPECT_EQ(Magnitude(0, 1), 0);  // 0.7
  EXPECT_EQ(Magnitude(1, 1), 0);  // 0.99
  EXPECT_EQ(Magnitude(3, 4), 3);  // 0.7 * 5 = 3.5
  EXPECT_EQ(Magnitude(4, 3), 3);
  EXPECT_EQ(Magnitude(10, 0), 7);
  EXPECT_EQ(Magnitude(255, 0), 178);  // 178.5
  EXPECT_EQ(Magnitude(255, 255), 252);
}

TEST(MagnitudeTable, TheFactorIsADoubleJustBelowSevenTenths) {
  // 0.7 * 90 in doubles is the last one below 63, so whole-number arithmetic would differ here.
  EXPECT_EQ(Magnitude(90, 0), 62);
  EXPECT_EQ(Magnitude(54, 72), 62);
  EXPECT_EQ(SignedMagnitude(-90, 0), 62);
}

TEST(MagnitudeTable, EveryEntryIsItsFormula) {
  for (int a = 0; a <= 255; ++a) {
    for (int b = 0; b <= 255; ++b)
      ASSERT_EQ(Magnitude(a, b), ReferenceMagnitude(a, b)) << a << ' ' << b;
  }
}

TEST(SignedMagnitudeTable, ValuesByHandInAllQuadrants) {
  EXPECT_EQ(SignedMagnitude(0, 0), 0);
  EXPECT_EQ(SignedMagnitude(3, -4), 3);
  EXPECT_EQ(SignedMagnitude(-4, 3), 3);
  EXPECT_EQ(SignedMagnitude(-10, 0), 7);
  EXPECT_EQ(SignedMagnitude(255, 255), 252);
  EXPECT_EQ(SignedMagnitude(-255, 255), 252);
  EXPECT_EQ(SignedMagnitude(-255, -255), 252);
  EXPECT_EQ(SignedMagnitude(255, -255), 252);
}

TEST(SignedMagnitudeTable, EveryEntryIsItsFormula) {
  for (int gy = -255; gy <= 255; ++gy) {
    for (int gx = -255; gx <= 255; ++gx)
      ASSERT_EQ(SignedMagnitude(gx, gy), ReferenceMagnitude(gx, gy)) << gx << ' ' << gy;
  }
}

TEST(SectorTable, BoundsByHand) {
  AcquireGradientTables();
  const struct {
    int first, last, sector;
  } kRanges[] = {{0, 22, 0},    {23, 67, 1},   {68, 112, 2},  {113, 157, 3}, {158, 202, 0},
                 {203, 247, 1}, {248, 292, 2}, {293, 337, 3}, {338, 360, 0}};
  for (const auto& range : kRanges) {
    for (int degrees = range.first; degrees <= range.last; ++degrees)
      EXPECT_EQ(SectorTable()[static_cast<std::size_t>(degrees)], range.sector) << degrees;
  }
}

TEST(SectorTable, OppositeDirectionsShareASector) {
  AcquireGradientTables();
  for (std::size_t degrees = 0; degrees <= 180; ++degrees)
    EXPECT_EQ(SectorTable()[degrees], SectorTable()[degrees + 180]) << degrees;
}

}  // namespace
}  // namespace orvandel::test
