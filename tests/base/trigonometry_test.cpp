#include "base/trigonometry.h"

#include <cmath>
#include <cstdint>

#include <gtest/gtest.h>

#include "tests/support/numbers.h"
#include "tests/support/same_bits.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

const double kNotANumber = std::nan("");

TEST(Trigonometry, ZeroIsItsOwnSine) {
  EXPECT_TRUE(SameBits(Sin(0.0), 0.0));
  EXPECT_TRUE(SameBits(Sin(-0.0), -0.0));
  EXPECT_TRUE(SameBits(Cos(0.0), 1.0));
  EXPECT_TRUE(SameBits(Cos(-0.0), 1.0));
}

TEST(Trigonometry, TheNearestDoublesToTurnsGiveTheirErrorAsSine) {
  // pi less its nearest double is 1.2246467991473531772e-16.
  EXPECT_TRUE(SameBits(Sin(kPi), 1.2246467991473531772e-16));
  EXPECT_TRUE(SameBits(Sin(2 * kPi), -2.4492935982947063545e-16));
  EXPECT_TRUE(SameBits(Cos(kPi / 2), 6.1232339957367658861e-17));
  EXPECT_TRUE(SameBits(Cos(kPi), -1.0));
}

TEST(Trigonometry, WhatIsNoAngleGivesNoNumber) {
  for (const double angle : {kInfinity, -kInfinity, kNotANumber}) {
    EXPECT_TRUE(std::isnan(Sin(angle)));
    EXPECT_TRUE(std::isnan(Cos(angle)));
  }
}

TEST(Trigonometry, HugeAnglesAreTheCLibrarys) {
  // Read at run time: compilers work out functions of constants with more digits than the C library.
  for (const volatile double angle : {100001.0, -1e9, 1e300}) {
    EXPECT_TRUE(SameBits(Sin(angle), std::sin(angle)));
    EXPECT_TRUE(SameBits(Cos(angle), std::cos(angle)));
  }
}

TEST(Trigonometry, EighthsOfATurnAreExactDirections) {
  const double directions[][3] = {{0, 1, 0},
                                  {1, 1, kPi / 4},
                                  {1, 0, kPi / 2},
                                  {1, -1, 3 * kPi / 4},
                                  {0.0, -1, kPi},
                                  {-0.0, 1, -0.0},
                                  {-1, 1, -kPi / 4},
                                  {-1, 0, -kPi / 2},
                                  {-1, -1, -3 * kPi / 4},
                                  {-0.0, -1, -kPi}};
  for (const auto& [y, x, angle] : directions) {
    for (const double length : {1.0, 127.0, 1e-99, 1e99, 1e-300, 1e300})
      EXPECT_TRUE(SameBits(ArcTan2(y * length, x * length), angle)) << y << ' ' << x;
  }
}

TEST(Trigonometry, SpecialDirectionsAreTheCLibrarys) {
  const double values[] = {0.0,     -0.0,  1.0,       -1.0,       1e-310,
                           -1e-200, 1e200, kInfinity, -kInfinity, kNotANumber};
  for (const double y : values) {
    for (const double x : values) {
      EXPECT_TRUE(SameBits(ArcTan2(y, x), std::atan2(y, x))) << y << ' ' << x;
      EXPECT_TRUE(SameBits(Hypot(y, x), std::hypot(y, x))) << y << ' ' << x;
    }
  }
}

TEST(Trigonometry, WholeTrianglesHaveWholeHypotenuses) {
  EXPECT_EQ(Hypot(3, -4), 5.0);
  EXPECT_EQ(Hypot(-20, 21), 29.0);
  EXPECT_EQ(Hypot(0, -7), 7.0);
  EXPECT_EQ(Hypot(7, 0), 7.0);
  EXPECT_EQ(Hypot(0, 0), 0.0);
  EXPECT_EQ(Hypot(kInfinity, 1), kInfinity);
  EXPECT_EQ(Hypot(3e-200, 4e-200), std::hypot(3e-200, 4e-200));
}

/// FNV-1a.
class Digest {
 public:
  void Add(double value) {
    const std::uint64_t bits = BitsOf(value);
    for (int shift = 0; shift < 64; shift += 8) {
      hash_ ^= bits >> shift & 0xFF;
      hash_ *= 0x100000001b3u;
    }
  }
  std::uint64_t Value() const { return hash_; }

 private:
  std::uint64_t hash_ = 0xcbf29ce484222325u;
};

/// What the numbers are is for the test against a reference to say. That every compiler and system gets the same
/// ones, down to the last bit, is what this digest says: it was taken once, and holds everywhere.
TEST(Trigonometry, TheBitsAreTheSameOnEverySystem) {
  UniformRandom random(20);
  Digest digest;
  for (int i = 0; i < 200000; ++i) {
    const double angle = random.Real(-10, 10);
    const double x = random.Real(-100, 100);
    const double y = random.Real(-100, 100);
    digest.Add(Sin(angle));
    digest.Add(Cos(angle));
    digest.Add(ArcTan2(y, x));
    digest.Add(Hypot(y, x));
  }
  EXPECT_EQ(digest.Value(), 0x12a46206c90e25dfu);
}

}  // namespace
}  // namespace orvandel::test
