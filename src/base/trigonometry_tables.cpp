// The tables behind sine, cosine and arc tangent. The compiler computes them, by series in twice the precision of a
// double, so that there are no digits to mistype.

#include "base/trigonometry_tables.h"

namespace orvandel {
namespace {

constexpr DoubleDouble Ratio(int numerator, int denominator) {
  return DoubleDouble{static_cast<double>(numerator), 0.0} /
         DoubleDouble{static_cast<double>(denominator), 0.0};
}

constexpr int kNumReciprocals = 64;

/// 1 / n. Worked out once: compilers bound how long they compute.
struct Reciprocals {
  constexpr Reciprocals() {
    for (int n = 1; n < kNumReciprocals; ++n)
      of[n] = Ratio(1, n);
  }
  DoubleDouble of[kNumReciprocals] = {};
};
constexpr Reciprocals kReciprocals;

/// The power series for slopes above 0 and up to 1/5.
constexpr DoubleDouble SmallArcTangent(DoubleDouble slope) {
  const DoubleDouble minus_square = -(slope * slope);
  const double negligible = slope.high * 1e-34;
  DoubleDouble power = slope;
  DoubleDouble sum = slope;
  for (int n = 3; power.high > negligible || power.high < -negligible; n += 2) {
    power = power * minus_square;
    sum = sum + power * kReciprocals.of[n];
  }
  return sum;
}

/// J. Machin's formula of 1706: pi / 4 = 4 arctan 1/5 - arctan 1/239.
constexpr DoubleDouble kPiInFull = DoubleDouble{16.0, 0.0} * SmallArcTangent(Ratio(1, 5)) -
                                   DoubleDouble{4.0, 0.0} * SmallArcTangent(Ratio(1, 239));

struct SineAndCosine {
  DoubleDouble sine;
  DoubleDouble cosine;
};

/// The power series for angles up to pi / 4.
constexpr SineAndCosine Series(DoubleDouble angle) {
  SineAndCosine sums = {{0.0, 0.0}, {1.0, 0.0}};
  DoubleDouble term = sums.cosine;
  for (int n = 1; n < 32; ++n) {
    term = term * angle * kReciprocals.of[n];
    DoubleDouble& sum = n % 2 == 0 ? sums.cosine : sums.sine;
    sum = n % 4 < 2 ? sum + term : sum - term;
  }
  return sums;
}

/// One eighth of a turn by the series, the rest by symmetry, so that quarter turns come out exact.
constexpr StepSines MakeStepSines() {
  StepSines sines = {};
  constexpr int kQuarter = kStepsPerQuarterTurn;
  for (int k = 0; k <= kQuarter / 2; ++k) {
    const SineAndCosine values = Series(kPiInFull * Ratio(2 * k, kStepsPerTurn));
    sines.Set(k, values.sine);
    sines.Set(kQuarter - k, values.cosine);
  }
  for (int k = kQuarter + 1; k <= 2 * kQuarter; ++k)
    sines.Set(k, sines(2 * kQuarter - k));
  for (int k = 2 * kQuarter + 1; k < kStepsPerTurn + kQuarter; ++k)
    sines.Set(k, DoubleDouble{} - sines(k - 2 * kQuarter));
  return sines;
}

/// Each from the one before: arctan b = arctan a + arctan((b - a) / (1 + a b)).
constexpr SlopeAngles MakeSlopeAngles() {
  SlopeAngles angles = {};
  for (int k = 1; k <= kSlopeSteps; ++k) {
    const DoubleDouble turn = Ratio(kSlopeSteps, kSlopeSteps * kSlopeSteps + k * (k - 1));
    angles.Set(k, angles(k - 1) + SmallArcTangent(turn));
  }
  return angles;
}

}  // namespace

constinit const StepSines kStepSines = MakeStepSines();
constinit const SlopeAngles kSlopeAngles = MakeSlopeAngles();

}  // namespace orvandel
