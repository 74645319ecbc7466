// The tables behind sine, cosine and arc tangent. The compiler computes them, by series in twice the precision of a
// double, so that there are no digits to mistype.

#include "platform/trigonometry_tables.h"

#include <cstddef>

namespace orvandel {
namespace {

constexpr DoubleDouble Ratio(int numerator, int denominator) {
  return DoubleDouble{static_cast<double>(numerator), 0.0} /
         DoubleDouble{static_cast<double>(denominator), 0.0};
}

/// 1 / n. Worked out once: compilers bound how long they compute.
constexpr auto kReciprocals = [] {
  std::array<DoubleDouble, 64> reciprocals = {};
  for (int n = 1; n < 64; ++n)
    reciprocals[static_cast<std::size_t>(n)] = Ratio(1, n);
  return reciprocals;
}();

/// The power series for slopes above 0 and up to 1/5.
constexpr DoubleDouble SmallArcTangent(DoubleDouble slope) {
  const DoubleDouble minus_square = -(slope * slope);
  const double negligible = slope.high * 1e-34;
  DoubleDouble power = slope;
  DoubleDouble sum = slope;
  for (std::size_t n = 3; power.high > negligible || power.high < -negligible; n += 2) {
    power = power * minus_square;
    sum = sum + power * kReciprocals[n];
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
    term = term * angle * kReciprocals[static_cast<std::size_t>(n)];
    DoubleDouble& sum = n % 2 == 0 ? sums.cosine : sums.sine;
    sum = n % 4 < 2 ? sum + term : sum - term;
  }
  return sums;
}

/// One eighth of a turn by the series, the rest by symmetry, so that quarter turns come out exact.
constexpr auto StepSines() {
  std::array<DoubleDouble, kStepsPerTurn + kStepsPerQuarterTurn> sines = {};
  constexpr int kQuarter = kStepsPerQuarterTurn;
  for (int k = 0; k <= kQuarter / 2; ++k) {
    const SineAndCosine values = Series(kPiInFull * Ratio(2 * k, kStepsPerTurn));
    sines[static_cast<std::size_t>(k)] = values.sine;
    sines[static_cast<std::size_t>(kQuarter - k)] = values.cosine;
  }
  for (int k = kQuarter + 1; k < kStepsPerTurn + kQuarter; ++k) {
    const int mirrored = k <= 2 * kQuarter ? 2 * kQuarter - k : k - 2 * kQuarter;
    const DoubleDouble sine = sines[static_cast<std::size_t>(mirrored)];
    sines[static_cast<std::size_t>(k)] = k <= 2 * kQuarter ? sine : DoubleDouble{} - sine;
  }
  return sines;
}

/// Each from the one before: arctan b = arctan a + arctan((b - a) / (1 + a b)).
constexpr auto SlopeAngles() {
  std::array<DoubleDouble, kSlopeSteps + 1> angles = {};
  for (int k = 1; k <= kSlopeSteps; ++k) {
    const DoubleDouble turn = Ratio(kSlopeSteps, kSlopeSteps * kSlopeSteps + k * (k - 1));
    angles[static_cast<std::size_t>(k)] =
        angles[static_cast<std::size_t>(k - 1)] + SmallArcTangent(turn);
  }
  return angles;
}

}  // namespace

constinit const std::array<DoubleDouble, kStepsPerTurn + kStepsPerQuarterTurn> kStepSines =
    StepSines();
constinit const std::array<DoubleDouble, kSlopeSteps + 1> kSlopeAngles = SlopeAngles();

}  // namespace orvandel
