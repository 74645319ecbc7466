#pragma once

#include <functional>

namespace orvandel::bench {

/// One run; returns the seconds that count. What it does outside them, like restoring the image, is
/// not measured.
using TimedRun = std::function<double()>;

/// Median seconds of two ways to do the same work on the same input.
struct TimePair {
  double ours_s = 0;
  double theirs_s = 0;

  /// How many times faster ours is.
  double Ratio() const { return theirs_s / ours_s; }
};

/// Runs both in turn, so that both meet the same moods of the machine, after one run each that
/// warms caches and buffers: 7 to 51 times, as many as fit into about a third of a second.
TimePair TimeInTurn(const TimedRun& ours, const TimedRun& theirs);

}  // namespace orvandel::bench
