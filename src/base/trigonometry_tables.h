#pragma once

#include "base/double_double.h"

namespace orvandel {

/// A full turn is cut into this many steps, and a quarter of one into kStepsPerQuarterTurn.
inline constexpr int kStepsPerTurn = 128;
inline constexpr int kStepsPerQuarterTurn = kStepsPerTurn / 4;

/// Slopes 0 to 1 are cut into this many steps.
inline constexpr int kSlopeSteps = 256;

/// Numbers of twice the precision of a double, as two arrays, which vector code gathers from.
template <int kSize>
struct LongTable {
  constexpr DoubleDouble operator()(int k) const { return {high[k], low[k]}; }
  constexpr void Set(int k, DoubleDouble value) {
    high[k] = value.high;
    low[k] = value.low;
  }
  double high[kSize];
  double low[kSize];
};

/// Sines of multiples of 2 pi / kStepsPerTurn, a turn and a quarter of them, so that the cosine of
/// step k is the sine of step k + kStepsPerQuarterTurn.
using StepSines = LongTable<kStepsPerTurn + kStepsPerQuarterTurn>;
extern const StepSines kStepSines;

/// Arc tangents of multiples of 1 / kSlopeSteps.
using SlopeAngles = LongTable<kSlopeSteps + 1>;
extern const SlopeAngles kSlopeAngles;

}  // namespace orvandel
