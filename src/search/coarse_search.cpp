#include "search/coarse_search.h"

#include <algorithm>
#include <array>

namespace orvandel {
namespace {

/// Segments of one edge are not cut at the same points in pattern and scene, so the ratio of their
/// lengths is only about the scale.
constexpr std::array<double, 5> kScaleFactors = {1.0, 1.1, 0.9, 1.2, 0.8};

class CoarseSearch {
 public:
  CoarseSearch(const std::vector<CLineSegment>& pattern, const std::vector<CLineSegment>& scene,
               PoseScorer& score_of, const CoarseOptions& options, const Deadline& deadline)
      : pattern_(pattern),
        scene_(scene),
        score_of_(score_of),
        options_(options),
        deadline_(deadline) {}

  Hypothesis Run() {
    const auto wanted = static_cast<std::size_t>(std::max(options_.max_pattern_segments, 0));
    const std::size_t num_pattern = std::min(wanted, pattern_.size());
    for (std::size_t i = 0; i < num_pattern && !stop_; ++i) {
      for (std::size_t j = 0; j < scene_.size(); ++j)
        TryPair(i, j);
    }
    return best_;
  }

 private:
  /// Scores the poses that lay pattern segment i on scene segment j, until one is accepted or the
  /// time is up.
  void TryPair(std::size_t i, std::size_t j) {
    const CLineSegment& p = pattern_[i];
    const CLineSegment& s = scene_[j];
    const Rotation rotation(p.direction - s.direction);
    const Point to_reference = ToReference(p, score_of_.Reference());

    for (const double factor : kScaleFactors) {
      const double scale = s.length / p.length * factor;
      if (scale > options_.max_scale || scale < options_.min_scale) continue;

      const Pose pose = PoseThrough({s.mid_x, s.mid_y}, rotation, scale, to_reference);
      const double score = score_of_(pose, {best_.score, options_.accept_score});
      if (score > best_.score) best_ = {pose, score, i, j};
      if (score >= options_.accept_score || deadline_.HasPassed()) {
        stop_ = true;
        return;
      }
    }
  }

  const std::vector<CLineSegment>& pattern_;
  const std::vector<CLineSegment>& scene_;
  PoseScorer& score_of_;
  const CoarseOptions& options_;
  const Deadline& deadline_;
  Hypothesis best_;
  bool stop_ = false;
};

}  // namespace

Hypothesis FindBestHypothesis(const std::vector<CLineSegment>& pattern,
                              const std::vector<CLineSegment>& scene, PoseScorer& score_of,
                              const CoarseOptions& options, const Deadline& deadline) {
  return CoarseSearch(pattern, scene, score_of, options, deadline).Run();
}

Point ToReference(const CLineSegment& pattern_segment, Point reference) {
  return {reference.x - pattern_segment.mid_x, reference.y - pattern_segment.mid_y};
}

}  // namespace orvandel
