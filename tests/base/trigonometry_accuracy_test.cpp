// Sine, cosine, arc tangent and hypotenuse against a library of as many digits as one asks for.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <mpfr.h>

#include "base/trigonometry.h"
#include "tests/support/numbers.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

constexpr int kNumValues = 30000;

/// A number of 300 bits.
class LongNumber {
 public:
  LongNumber() { mpfr_init2(value_, 300); }
  explicit LongNumber(double value) : LongNumber() { mpfr_set_d(value_, value, MPFR_RNDN); }
  LongNumber(const LongNumber&) = delete;
  LongNumber& operator=(const LongNumber&) = delete;
  ~LongNumber() { mpfr_clear(value_); }

  mpfr_ptr get() { return value_; }

  /// Distance from a double, in units of that double's last place at this number.
  double UlpsFrom(double other) {
    const double nearest = std::abs(mpfr_get_d(value_, MPFR_RNDN));
    int exponent = 0;
    std::frexp(nearest, &exponent);
    LongNumber difference;
    mpfr_sub_d(difference.value_, value_, other, MPFR_RNDN);
    return std::abs(mpfr_get_d(difference.value_, MPFR_RNDN)) / std::ldexp(1.0, exponent - 53);
  }

 private:
  mpfr_t value_;
};

double SinCosError(double angle) {
  LongNumber exact(angle);
  LongNumber sine;
  LongNumber cosine;
  mpfr_sin_cos(sine.get(), cosine.get(), exact.get(), MPFR_RNDN);
  const SinCos value = SinCosOf(angle);
  return std::max(sine.UlpsFrom(value.sine), cosine.UlpsFrom(value.cosine));
}

double ArcTan2Error(double y, double x) {
  LongNumber exact_y(y);
  LongNumber exact_x(x);
  LongNumber angle;
  mpfr_atan2(angle.get(), exact_y.get(), exact_x.get(), MPFR_RNDN);
  return angle.UlpsFrom(ArcTan2(y, x));
}

double HypotError(double y, double x) {
  LongNumber exact_y(y);
  LongNumber exact_x(x);
  LongNumber length;
  mpfr_hypot(length.get(), exact_x.get(), exact_y.get(), MPFR_RNDN);
  return length.UlpsFrom(Hypot(x, y));
}

TEST(TrigonometryAccuracy, SineAndCosineOfRandomAngles) {
  for (const double range : {1e-9, 1e-3, 0.1, 1.0, 2 * kPi, 1000.0}) {
    UniformRandom random(1);
    double worst = 0.0;
    for (int i = 0; i < kNumValues; ++i)
      worst = std::max(worst, SinCosError(random.Real(-range, range)));
    EXPECT_LT(worst, 0.51) << range;
  }
}

/// Where the tables' steps meet, and where a sine or cosine is nearly 0.
TEST(TrigonometryAccuracy, SineAndCosineWhereTheReductionIsHardest) {
  UniformRandom random(2);
  double worst = 0.0;
  for (int half_step = -1000; half_step <= 1000; ++half_step) {
    const double angle = half_step * (kPi / 128);
    worst = std::max({worst, SinCosError(angle), SinCosError(std::nextafter(angle, 1e9)),
                      SinCosError(std::nextafter(angle, -1e9))});
    for (int i = 0; i < 50; ++i)
      worst = std::max(worst, SinCosError(angle + std::pow(2.0, random.Real(-50, -6))));
  }
  EXPECT_LT(worst, 0.51);
}

TEST(TrigonometryAccuracy, SineAndCosineOfManyTurns) {
  UniformRandom random(3);
  double worst = 0.0;
  for (int i = 0; i < kNumValues; ++i)
    worst = std::max(worst, SinCosError(random.Real(-1e5, 1e5)));
  for (int quarter = 1; quarter * (kPi / 2) < 1e5; ++quarter)
    worst = std::max(worst, SinCosError(quarter * (kPi / 2)));
  EXPECT_LT(worst, 0.7);
}

TEST(TrigonometryAccuracy, ArcTangentOfRandomSlopes) {
  for (const double slope : {1e-9, 1e-3, 0.003, 0.01, 0.1, 1.0, 10.0, 1e3, 1e9}) {
    UniformRandom random(4);
    double worst = 0.0;
    for (int i = 0; i < kNumValues; ++i)
      worst = std::max(worst, ArcTan2Error(slope * random.Real(-1, 1), random.Real(-1, 1)));
    EXPECT_LT(worst, 0.51) << slope;
  }
}

/// Every gradient of 8-bit data, and where the table's steps meet.
TEST(TrigonometryAccuracy, ArcTangentOfWholeSlopes) {
  double worst = 0.0;
  for (int y = -255; y <= 255; ++y) {
    for (int x = -255; x <= 255; x += 2)
      worst = std::max(worst, ArcTan2Error(y, x));
    const double between = (y + 0.5) / 256;
    worst = std::max(
        {worst, ArcTan2Error(between, 1.0), ArcTan2Error(std::nextafter(between, 9), 1.0)});
  }
  EXPECT_LT(worst, 0.51);
}

TEST(TrigonometryAccuracy, HypotenuseOfRandomLegs) {
  for (const double leg : {1e-99, 1e-9, 1e-3, 1.0, 1e99}) {
    UniformRandom random(5);
    double worst = 0.0;
    for (int i = 0; i < kNumValues; ++i)
      worst = std::max(worst, HypotError(leg * random.Real(-1, 1), random.Real(-1, 1)));
    EXPECT_LT(worst, 0.51) << leg;
  }
}

}  // namespace
}  // namespace orvandel::test
