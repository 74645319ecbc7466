#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"
#include "shape/find_shapes.h"

namespace orvandel::cli {

enum class FindStatus : std::uint8_t {
  kFound,
  kTimedOut,  ///< the time was up before anything was found
  // Of the shape engine.
  kNotFound,  ///< nothing in the scene scores enough
  // Of the segment engine.
  kBelowAcceptScore,  ///< the best pose is not good enough
  kNoContours,        ///< nothing to match in the scene
  kNoLines,           ///< no straight edge in the scene
};

/// The status as reports spell it, "below_accept_score".
const char* StatusWord(FindStatus status);

/// A place where a pattern may be. The centre of the top-left pixel is (0, 0), whatever the engine.
struct FoundMatch {
  Similarity scene_from_pattern;  ///< of pattern points measured from the reference point
  double score = 0;               ///< shapes: 0 to 1; segments: percent
  bool is_accepted = false;
  std::optional<shape::Match> details = {};  ///< of the shape engine

  /// Whether the pattern tells its rotation; a full circle does not.
  bool HasAngle() const { return !details || std::isfinite(details->covariance[10]); }
};

/// What became of one search.
struct FindResult {
  FindStatus status = FindStatus::kTimedOut;
  /// Best first. The segment engine tells one, which need not be accepted.
  std::vector<FoundMatch> matches;
  double time_ms = 0;      ///< of the search alone, without reading the file
  bool timed_out = false;  ///< the time was up before all had been looked at
  std::optional<shape::StageTimes> stage_times_us = {};  ///< of the shape engine

  bool IsFound() const { return status == FindStatus::kFound; }
};

}  // namespace orvandel::cli
