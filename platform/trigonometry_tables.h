#pragma once

#include <array>

#include "platform/double_double.h"

namespace orvandel {

/// A full turn is cut into this many steps, and a quarter of one into kStepsPerQuarterTurn.
inline constexpr int kStepsPerTurn = 128;
inline constexpr int kStepsPerQuarterTurn = kStepsPerTurn / 4;

/// Slopes 0 to 1 are cut into this many steps.
inline constexpr int kSlopeSteps = 256;

/// Sines of multiples of 2 pi / kStepsPerTurn, a turn and a quarter of them, so that the cosine of
/// step k is the sine of step k + kStepsPerQuarterTurn.
extern const std::array<DoubleDouble, kStepsPerTurn + kStepsPerQuarterTurn> kStepSines;

/// Arc tangents of multiples of 1 / kSlopeSteps.
extern const std::array<DoubleDouble, kSlopeSteps + 1> kSlopeAngles;

}  // namespace orvandel
