// The functions of trigonometry.h where nothing about the arguments is special, without a branch, so that
// loops over them become vector code with the same bits. Files that are compiled for other instructions include
// this: nothing here has linkage.
//
// All follow one plan: subtract a tabled angle so that a small one is left, take a short series of that, and add
// the tabled value. The tables hold twice the precision of a double, the leading products are split so that they
// are exact, and the largest terms are added last, their rounding error kept. (The plan is P. T. P. Tang's,
// "Table-lookup algorithms for elementary functions and their error analysis", 1991.)

#include <math.h>

#include "base/double_double.h"
#include "base/rounding.h"
#include "base/trigonometry.h"
#include "base/trigonometry_tables.h"

namespace orvandel {
namespace {

constexpr double kLargestNearAngle = 1e5;
constexpr double kSmallestNearLength = 1e-100;
constexpr double kLargestNearLength = 1e100;

[[maybe_unused]] bool IsNearAngle(double angle) {
  return fabs(angle) <= kLargestNearAngle;
}

bool IsNearLength(double length) {
  return fabs(length) >= kSmallestNearLength && fabs(length) <= kLargestNearLength;
}

/// Whether (x, y) is a direction that ArcTan2Near takes.
[[maybe_unused]] bool IsNearPoint(double y, double x) {
  return (IsNearLength(x) && (IsNearLength(y) || y == 0.0)) || (IsNearLength(y) && x == 0.0);
}

/// An angle as a multiple of the tables' step, and what is left: |rest| is at most half a step.
struct ReducedAngle {
  int step;
  DoubleDouble rest;
};

/// Three parts of 2 pi / kStepsPerTurn, of which the first two have 32 bits: multiples of them up to
/// 2^21, which kLargestNearAngle needs, are exact.
ReducedAngle ReduceAngle(double angle) {
  constexpr double kStepsPerRadian = kStepsPerTurn / kTwoPi;
  constexpr double kFirst = 0x1.921fb544p-5;
  constexpr double kSecond = 0x1.0b4611a6p-39;
  constexpr double kThird = 0x1.3198a2e037073p-74;
  constexpr double kToInteger = 6755399441055744.0;  // 1.5 * 2^52: adding it rounds to an integer

  const double steps = (angle * kStepsPerRadian + kToInteger) - kToInteger;
  const DoubleDouble rest = TwoSum(angle - steps * kFirst, -(steps * kSecond));
  const int step = static_cast<int>(steps) & (kStepsPerTurn - 1);
  return {step, FastTwoSum(rest.high, rest.low - steps * kThird)};
}

/// @param rest          what ReduceAngle leaves of the angle.
/// @param sine, cosine  tabled, of its step.
SinCos SinCosFrom(double angle, DoubleDouble rest, DoubleDouble sine, DoubleDouble cosine) {
  const double r = rest.high;
  const double r2 = r * r;
  // sin r - r, and cos r - 1
  const double sine_tail = r * r2 * (-1.0 / 6 + r2 * (1.0 / 120 - r2 * (1.0 / 5040)));
  const double cosine_tail = r2 * (-0.5 + r2 * (1.0 / 24 + r2 * (-1.0 / 720 + r2 * (1.0 / 40320))));

  const DoubleDouble r_halves = Split(r);
  const DoubleDouble sine_halves = Split(sine.high);
  const DoubleDouble cosine_halves = Split(cosine.high);
  // sine * r and cosine * r: an exact part and a small rest
  const double sine_lead = sine_halves.high * r_halves.high;
  const double cosine_lead = cosine_halves.high * r_halves.high;
  const double sine_rest =
      sine_halves.high * r_halves.low + ((sine_halves.low + sine.low) * r + sine.high * rest.low);
  const double cosine_rest = cosine_halves.high * r_halves.low +
                             ((cosine_halves.low + cosine.low) * r + cosine.high * rest.low);

  const DoubleDouble s = FastTwoSum(sine.high, cosine_lead);
  const DoubleDouble c = FastTwoSum(cosine.high, -sine_lead);
  const double s_small =
      cosine_rest + (cosine.high * sine_tail + (sine.high * cosine_tail + sine.low));
  const double c_small =
      (cosine.high * cosine_tail + cosine.low) - (sine_rest + sine.high * sine_tail);
  // Angles that are their own sine keep the sign of a zero.
  const bool tiny = fabs(angle) < 0x1p-27;
  return {tiny ? angle : s.high + (s.low + s_small), c.high + (c.low + c_small)};
}

/// Needs IsNearAngle.
[[maybe_unused]] SinCos SinCosNear(double angle) {
  const auto [step, rest] = ReduceAngle(angle);
  return SinCosFrom(angle, rest, kStepSines(step), kStepSines(step + kStepsPerQuarterTurn));
}

/// A direction as the slope from the nearest axis, at most 1.
struct Slope {
  double rise;
  double run;
};

Slope SlopeOf(double y, double x) {
  const double width = fabs(x);
  const double height = fabs(y);
  const bool steep = height > width;
  return {steep ? width : height, steep ? height : width};
}

/// The tables' step nearest to a slope. A little less than one half is added, so that half a step itself
/// belongs to step 0 and ArcTan2From's `across` has no more bits than a double.
int StepOf(Slope slope) {
  return static_cast<int>(slope.rise / slope.run * kSlopeSteps + 0.499);
}

/// @param step    of the slope of (x, y), as a double.
/// @param tabled  its angle.
double ArcTan2From(double y, double x, double step, DoubleDouble tabled) {
  const auto [rise, run] = SlopeOf(y, x);
  const bool steep = fabs(y) > fabs(x);
  const double slope = step * (1.0 / kSlopeSteps);

  // Slope of the angle that is left: (rise - slope run) / (run + slope rise). The difference is exact.
  const DoubleDouble run_halves = Split(run);
  const double across = (rise - slope * run_halves.high) - slope * run_halves.low;
  const DoubleDouble along = FastTwoSum(run, slope * rise);
  const double r = across / along.high;
  const DoubleDouble product = TwoProduct(r, along.high);
  const double r_low = ((across - product.high) - product.low - r * along.low) / along.high;
  const double r2 = r * r;
  const double tail = r * r2 * (-1.0 / 3 + r2 * (1.0 / 5 - r2 * (1.0 / 7)));

  // The angle is 0, pi / 2 or pi, and the angle from that axis added or subtracted.
  constexpr DoubleDouble kPiInFull = {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53};
  const double half_turns = steep ? 0.5 : x < 0.0 ? 1.0 : 0.0;
  const double sign = steep != (x < 0.0) ? -1.0 : 1.0;
  const DoubleDouble axis = FastTwoSum(half_turns * kPiInFull.high, sign * tabled.high);
  const DoubleDouble sum = FastTwoSum(axis.high, sign * r);
  const double small = half_turns * kPiInFull.low + sign * (tabled.low + (r_low + tail));
  return copysign(sum.high + (sum.low + (axis.low + small)), y);
}

/// Needs IsNearPoint.
[[maybe_unused]] double ArcTan2Near(double y, double x) {
  const int step = StepOf(SlopeOf(y, x));
  return ArcTan2From(y, x, step, kSlopeAngles(step));
}

}  // namespace
}  // namespace orvandel
