// Which points of a pattern's contours become verification points.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/patt_verify.h"
#include "tests/reference/scoring.h"
#include "tests/support/contour_sets.h"
#include "tests/support/numbers.h"
#include "tests/support/same_bits.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

constexpr double kFraction = 0.06;
constexpr int kCap = 20;

/// A contour whose point k has x = first_x + k, y = -k and direction k / 1000.
TestContour NumberedContour(int size, int first_x = 0) {
  TestContour contour;
  for (int k = 0; k < size; ++k)
    contour.points.push_back({static_cast<double>(first_x + k), static_cast<double>(-k), k * 1e-3});
  return contour;
}

std::vector<int> XOf(const CPattVerify& verifier) {
  std::vector<int> x;
  for (int i = 0; i < verifier.pointCount; ++i)
    x.push_back(static_cast<int>(verifier.pointX[i]));
  return x;
}

/// The indices chosen of one contour.
std::vector<int> Chosen(int size, double fraction = kFraction, int cap = kCap) {
  const ContourHandle set = MakeSet({NumberedContour(size)});
  CPattVerify verifier;
  EXPECT_EQ(verifier.ChooseVerifyPoints(set.get(), fraction, cap), 0);
  return XOf(verifier);
}

/// 0, step, 2 * step, ..., last.
std::vector<int> EveryUpTo(int step, int last) {
  std::vector<int> indices;
  for (int i = 0; i <= last; i += step)
    indices.push_back(i);
  return indices;
}

TEST(VerificationPoints, ContourOfOnePointGivesIt) {
  EXPECT_EQ(Chosen(1), (std::vector<int>{0}));
}

TEST(VerificationPoints, SeventeenPointsGiveOne) {
  EXPECT_EQ(Chosen(17), (std::vector<int>{0}));  // wanted 1.02
}

TEST(VerificationPoints, FiftyPointsGiveFour) {
  EXPECT_EQ(Chosen(50), (std::vector<int>{0, 16, 32, 48}));  // wanted 3, step 50 / 3
}

TEST(VerificationPoints, HundredPointsGiveSeven) {
  EXPECT_EQ(Chosen(100), (std::vector<int>{0, 16, 32, 48, 64, 80, 96}));  // wanted 6
}

TEST(VerificationPoints, ThousandPointsAreCappedAtTwenty) {
  EXPECT_EQ(Chosen(1000), EveryUpTo(50, 950));
  EXPECT_EQ(Chosen(1000).size(), 20U);
}

TEST(VerificationPoints, RemainderMayAddOneOrTwoToTheCap) {
  EXPECT_EQ(Chosen(1010), EveryUpTo(50, 1000));
  EXPECT_EQ(Chosen(1010).size(), 21U);
  EXPECT_EQ(Chosen(337), EveryUpTo(16, 336));
  EXPECT_EQ(Chosen(337).size(), 22U);
}

TEST(VerificationPoints, UpToThirtyThreePointsGiveOne) {
  for (int size = 1; size <= 33; ++size)
    EXPECT_EQ(Chosen(size), (std::vector<int>{0})) << size;
  EXPECT_EQ(Chosen(34), (std::vector<int>{0, 17}));      // wanted 2.04
  EXPECT_EQ(Chosen(41), (std::vector<int>{0, 20, 40}));  // step 20 leaves one over
}

TEST(VerificationPoints, NoContourGivesMoreThanTwentyTwo) {
  for (int size = 1; size <= 3000; ++size)
    ASSERT_LE(Chosen(size).size(), 22U) << size;
}

TEST(VerificationPoints, EmptyContourGivesNone) {
  EXPECT_TRUE(Chosen(0).empty());
}

TEST(VerificationPoints, FractionThatIsNotANumberOrNotAboveZeroGivesOne) {
  for (const double fraction : {std::nan(""), 0.0, -0.5, -1e300, -kInfinity})
    EXPECT_EQ(Chosen(10, fraction), (std::vector<int>{0})) << fraction;
}

TEST(VerificationPoints, FractionAboveOneTakesEveryPointOnce) {
  EXPECT_EQ(Chosen(10, 1.0, 1000), EveryUpTo(1, 9));
  EXPECT_EQ(Chosen(10, 2.5, 1000), EveryUpTo(1, 9));  // wanted 25 of 10: the step stays 1
  EXPECT_EQ(Chosen(10, 1e300, std::numeric_limits<int>::max()), EveryUpTo(1, 9));
}

TEST(VerificationPoints, InfiniteFractionMeetsTheCap) {
  EXPECT_EQ(Chosen(10, kInfinity, 5), EveryUpTo(2, 8));
}

TEST(VerificationPoints, CapBelowOneStillGivesOne) {
  for (const int cap : {0, -1, std::numeric_limits<int>::min()})
    EXPECT_EQ(Chosen(100, kFraction, cap), (std::vector<int>{0})) << cap;
}

TEST(VerificationPoints, ComeContourByContourInPointOrder) {
  const ContourHandle set =
      MakeSet({NumberedContour(50, 1000), NumberedContour(0), NumberedContour(34, 2000)});
  CPattVerify verifier;
  verifier.ChooseVerifyPoints(set.get(), kFraction, kCap);
  EXPECT_EQ(XOf(verifier), (std::vector<int>{1000, 1016, 1032, 1048, 2000, 2017}));
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(verifier.pointY[i], -16.0 * i);
    EXPECT_EQ(verifier.pointDir[i], 16 * i * 1e-3);
  }
}

TEST(VerificationPoints, FollowTheSetsOrderOfContours) {
  const ContourHandle set = MakeSet({NumberedContour(17, 1000), NumberedContour(50, 2000)});
  ctd_sort(set.get(), 1);
  CPattVerify verifier;
  verifier.ChooseVerifyPoints(set.get(), kFraction, kCap);
  EXPECT_EQ(XOf(verifier), (std::vector<int>{2000, 2016, 2032, 2048, 1000}));
}

TEST(VerificationPoints, SecondChoiceReplacesTheFirst) {
  CPattVerify verifier;
  verifier.ChooseVerifyPoints(MakeSet({NumberedContour(1000)}).get(), kFraction, kCap);
  verifier.ChooseVerifyPoints(MakeSet({NumberedContour(50, 7)}).get(), kFraction, kCap);
  EXPECT_EQ(XOf(verifier), (std::vector<int>{7, 23, 39, 55}));
}

TEST(VerificationPoints, EmptySetGivesArraysOfNoPoints) {
  for (const bool with_arrays : {false, true}) {
    const ContourHandle set = with_arrays ? MakeSet({}) : MakeEmptySet();
    CPattVerify verifier;
    verifier.ChooseVerifyPoints(MakeSet({NumberedContour(50)}).get(), kFraction, kCap);
    EXPECT_EQ(verifier.ChooseVerifyPoints(set.get(), kFraction, kCap), 0);
    EXPECT_EQ(verifier.pointCount, 0);
    EXPECT_NE(verifier.pointX, nullptr);
    EXPECT_NE(verifier.pointY, nullptr);
    EXPECT_NE(verifier.pointDir, nullptr);
  }
}

TEST(VerificationPoints, SetWithoutArraysGivesNoneWhateverItsCountsSay) {
  const ContourHandle set = MakeEmptySet();  // as a load that ran out of memory leaves it
  Fields(set).contour_count = 3;
  Fields(set).point_count = 30;
  CPattVerify verifier;
  EXPECT_EQ(verifier.ChooseVerifyPoints(set.get(), kFraction, kCap), 0);
  EXPECT_EQ(verifier.pointCount, 0);
  EXPECT_TRUE(std::isnan(verifier.ScoreAlongContours(set.get(), nullptr, 20, 20, 0, 1, 0, 0, 1)));
}

TEST(VerificationPoints, AgreeWithTheReferenceOnRandomSets) {
  for (std::uint32_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    std::vector<TestContour> contours;
    for (int c = random.Integer(0, 12); c > 0; --c)
      contours.push_back(NumberedContour(random.Integer(0, 900), random.Integer(0, 9999)));
    const double fraction = random.OneIn(3) ? kFraction : random.Real(-0.1, 1.5);
    const int cap = random.OneIn(3) ? kCap : random.Integer(-2, 500);
    const ContourHandle set = MakeSet(contours);
    CPattVerify verifier;
    verifier.ChooseVerifyPoints(set.get(), fraction, cap);
    const std::vector<ReferencePoint> expected =
        ReferenceVerificationPoints(set.get(), fraction, cap);
    ASSERT_EQ(verifier.pointCount, static_cast<int>(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
      ASSERT_TRUE(SameBits(verifier.pointX[i], expected[i].x));
      ASSERT_TRUE(SameBits(verifier.pointY[i], expected[i].y));
      ASSERT_TRUE(SameBits(verifier.pointDir[i], expected[i].g));
    }
  }
}

}  // namespace
}  // namespace orvandel::test
