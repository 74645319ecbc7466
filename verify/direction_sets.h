#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "verify/probing.h"

namespace orvandel {

/// A set of stored edge directions, a bit for each sixteenth of a turn from -pi on.
using DirectionSet = std::uint16_t;

/// The set that holds a stored direction. One that is no direction, or lies outside [-pi, pi], is in all
/// sets: it may match anything.
DirectionSet SetOfDirection(double stored);

/// A direction or rotation in 256ths of a turn, rounded down, modulo a turn.
using TurnCode = std::uint8_t;

/// Whether a number is small enough to be coded.
bool HasTurnCode(double radians);
TurnCode TurnCodeOf(double radians);

/// For the difference of two codes, pattern direction minus rotation: every stored direction that may
/// match. Both codes are rounded down, so the expected direction lies within a code either side.
class MatchingDirections {
 public:
  explicit MatchingDirections(const ProbeRules& rules);

  DirectionSet At(TurnCode difference) const { return sets_[difference]; }

 private:
  std::array<DirectionSet, 256> sets_;
};

}  // namespace orvandel
