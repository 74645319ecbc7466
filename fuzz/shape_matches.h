#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "fuzz/require.h"
#include "orvandel/orvandel.h"
#include "tests/support/covariance.h"
#include "tests/support/host_matches.h"

namespace orvandel::fuzz {

using Matches = std::vector<orv_match>;

inline orv_result ResultOf(const orv_finder* finder) {
  orv_result result;
  result.struct_size = sizeof result;
  ORVANDEL_REQUIRE(orv_finder_get_result(finder, &result) == ORV_OK);
  return result;
}

inline Matches MatchesOf(const orv_finder* finder) {
  Matches matches = test::HostMatchesOf(finder);
  ORVANDEL_REQUIRE(matches.size() == ResultOf(finder).num_matches);
  orv_match beyond;
  beyond.struct_size = sizeof beyond;
  ORVANDEL_REQUIRE(orv_finder_get_match(finder, matches.size(), &beyond) == ORV_INVALID_ARGUMENT);
  return matches;
}

inline bool IsShare(double value) {
  return value >= 0 && value <= 1;
}

inline void CheckAngle(double angle, const orv_find_options& options) {
  constexpr double kPi = 3.14159265358979323846;
  ORVANDEL_REQUIRE(angle > -kPi && angle <= kPi);
  if (options.angle_extent >= 2 * kPi) return;
  // Angles are told in one turn, the range in any: its ends are as exact as doubles of their size.
  const double rounding = 1e-12 + 1e-15 * std::fabs(options.angle_start);
  const double half = options.angle_extent / 2;
  const double off = std::remainder(angle - (options.angle_start + half), 2 * kPi);
  ORVANDEL_REQUIRE(std::fabs(off) <= half + rounding);
}

/// The affine map is that of the pose, and carries the pattern's origin to its place.
inline void CheckMap(const orv_match& match, const orv_pattern_info& pattern) {
  const double* const m = match.scene_from_pattern;
  const double cosine = match.scale * std::cos(match.angle);
  const double sine = match.scale * std::sin(match.angle);
  const double rounding = 1e-12 * match.scale;
  ORVANDEL_REQUIRE(std::fabs(m[0] - cosine) <= rounding && std::fabs(m[4] - cosine) <= rounding);
  ORVANDEL_REQUIRE(std::fabs(m[3] - sine) <= rounding && std::fabs(m[1] + sine) <= rounding);
  const double u = pattern.origin_x;
  const double v = pattern.origin_y;
  const double size =
      1 + std::fabs(match.x) + std::fabs(match.y) + match.scale * (std::fabs(u) + std::fabs(v));
  ORVANDEL_REQUIRE(std::fabs(m[0] * u + m[1] * v + m[2] - match.x) <= 1e-12 * size);
  ORVANDEL_REQUIRE(std::fabs(m[3] * u + m[4] * v + m[5] - match.y) <= 1e-12 * size);
}

inline void CheckMatch(const orv_match& match, const orv_find_options& options,
                       const orv_pattern_info& pattern) {
  ORVANDEL_REQUIRE(std::isfinite(match.x) && std::isfinite(match.y));
  CheckAngle(match.angle, options);
  ORVANDEL_REQUIRE(match.scale >= options.min_scale && match.scale <= options.max_scale);
  CheckMap(match, pattern);
  ORVANDEL_REQUIRE(test::IsCovariance(match.covariance));
  ORVANDEL_REQUIRE(match.score > 0 && match.score <= 1 && match.score >= options.min_score);
  ORVANDEL_REQUIRE(IsShare(match.coverage) && match.coverage > 0);
  ORVANDEL_REQUIRE(IsShare(match.share_outside) && match.share_outside < 1);
  ORVANDEL_REQUIRE(match.clutter >= 0 && std::isfinite(match.clutter));
  ORVANDEL_REQUIRE(match.fit_error >= 0 && std::isfinite(match.fit_error));
  ORVANDEL_REQUIRE(match.contrast > 0 && std::isfinite(match.contrast));
  if (options.polarity == ORV_POLARITY_SAME) ORVANDEL_REQUIRE(match.is_reversed == 0);
  if (options.polarity == ORV_POLARITY_REVERSED) ORVANDEL_REQUIRE(match.is_reversed != 0);
}

/// What the header promises of any search that succeeds.
inline void CheckMatches(const Matches& matches, const orv_find_options& options,
                         const orv_pattern_info& pattern) {
  if (options.max_matches > 0)
    ORVANDEL_REQUIRE(matches.size() <= static_cast<std::size_t>(options.max_matches));
  for (std::size_t i = 0; i < matches.size(); ++i) {
    CheckMatch(matches[i], options, pattern);
    ORVANDEL_REQUIRE(i == 0 || matches[i].score <= matches[i - 1].score);
  }
}

}  // namespace orvandel::fuzz
