#pragma once

#include <cstdint>

namespace orvandel {

struct SegmentSearchOptions {
  /// Scales (scene size over pattern size) that are tried. Beyond these bounds segments break up differently
  /// than in the pattern. The refined scale may leave them by up to 0.2.
  double min_scale = 0.25;
  double max_scale = 4.0;

  /// Percent; a hypothesis that reaches it ends the coarse search. Clutter alone hardly scores that high.
  double accept_score = 80.0;

  /// From the front of the pattern's list, the best-supported ones; more find more, slower.
  std::int32_t max_pattern_segments = 5;

  /// Microseconds from the start of a search, for all up to the coarse search's end.
  std::int32_t timeout_us = 1000000;
};

}  // namespace orvandel
