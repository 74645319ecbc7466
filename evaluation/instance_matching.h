#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "evaluation/pose_error.h"

namespace orvandel::evaluation {

/// The true instance that a match lies at.
struct MatchedInstance {
  std::size_t instance = 0;
  PoseError error;
};

/// Pairs matches with true instances, nearest corners first: each instance is found at most once,
/// so that of two matches at one instance the farther one is false.
///
/// @param instances   true poses, of pattern points measured from the pattern image's centre.
/// @param tolerance   what is near enough.
/// @return  for each match its instance; nothing for a false one.
std::vector<std::optional<MatchedInstance>> MatchInstances(std::span<const Match> matches,
                                                           std::span<const Similarity> instances,
                                                           const PatternFrame& frame,
                                                           Symmetry symmetry,
                                                           const Tolerance& tolerance);

}  // namespace orvandel::evaluation
