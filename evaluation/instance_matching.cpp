#include "evaluation/instance_matching.h"

#include <algorithm>

namespace orvandel::evaluation {
namespace {

struct Pair {
  std::size_t match = 0;
  MatchedInstance matched;
};

std::vector<Pair> PairsWithinTolerance(std::span<const Match> matches,
                                       std::span<const Similarity> instances,
                                       const PatternFrame& frame, Symmetry symmetry,
                                       const Tolerance& tolerance) {
  std::vector<Pair> pairs;
  for (std::size_t m = 0; m < matches.size(); ++m) {
    for (std::size_t i = 0; i < instances.size(); ++i) {
      const PoseError error = ErrorOf(matches[m].scene_from_pattern, instances[i], frame, symmetry);
      if (error.corner_px < tolerance.Px(frame, instances[i].scale))
        pairs.push_back({m, {i, error}});
    }
  }
  return pairs;
}

}  // namespace

std::vector<std::optional<MatchedInstance>> MatchInstances(std::span<const Match> matches,
                                                           std::span<const Similarity> instances,
                                                           const PatternFrame& frame,
                                                           Symmetry symmetry,
                                                           const Tolerance& tolerance) {
  std::vector<Pair> pairs = PairsWithinTolerance(matches, instances, frame, symmetry, tolerance);
  std::stable_sort(pairs.begin(), pairs.end(), [](const Pair& a, const Pair& b) {
    return a.matched.error.corner_px < b.matched.error.corner_px;
  });
  std::vector<std::optional<MatchedInstance>> matched(matches.size());
  std::vector<bool> is_taken(instances.size());
  for (const Pair& pair : pairs) {
    if (matched[pair.match] || is_taken[pair.matched.instance]) continue;
    matched[pair.match] = pair.matched;
    is_taken[pair.matched.instance] = true;
  }
  return matched;
}

}  // namespace orvandel::evaluation
