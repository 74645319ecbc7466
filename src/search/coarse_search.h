#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/geometry.h"
#include "lines/line_segment.h"
#include "search/anchored_pose.h"
#include "search/deadline.h"
#include "search/hypothesis.h"
#include "search/segment_search_options.h"
#include "verify/score_threshold.h"

namespace orvandel {

/// Gives a pose its score in percent; one that misses the threshold may come out as any other that does.
template <typename T>
concept PoseScoring = requires(T& score_of, const Similarity& pose,
                               const ScoreThreshold& threshold) {
  { score_of(pose, threshold) } -> std::convertible_to<double>;
};

/// Segments of one edge are not cut at the same points in pattern and scene, so the ratio of their
/// lengths is only about the scale.
inline constexpr std::array<double, 5> kScaleFactors = {1.0, 1.1, 0.9, 1.2, 0.8};

struct CoarseSearchResult {
  Hypothesis best;
  std::int64_t num_poses = 0;  ///< scored
  bool ran_out_of_time = false;
};

/// Lays each of a pattern's best-supported segments on every segment of a scene, at the ratio of their
/// lengths and at scales a little above and below, and scores the poses.
template <PoseScoring Scorer>
class CoarseSearch {
 public:
  CoarseSearch(std::span<const LineSegment> pattern, Point reference,
               std::span<const LineSegment> scene, Scorer& score_of,
               const SegmentSearchOptions& options, const Deadline& deadline)
      : pattern_(pattern),
        reference_(reference),
        scene_(scene),
        score_of_(score_of),
        options_(options),
        deadline_(deadline) {}

  CoarseSearchResult Run() {
    const auto wanted = static_cast<std::size_t>(std::max(options_.max_pattern_segments, 0));
    const std::size_t num_pattern = std::min(wanted, pattern_.size());
    for (std::size_t i = 0; i < num_pattern && !stop_; ++i) {
      for (std::size_t j = 0; j < scene_.size(); ++j)
        TryPair(i, j);
    }
    return result_;
  }

 private:
  /// Scores the poses that lay pattern segment i on scene segment j, until one is accepted or the
  /// time is up.
  void TryPair(std::size_t i, std::size_t j) {
    const LineSegment& p = pattern_[i];
    const LineSegment& s = scene_[j];
    const Rotation rotation(p.direction - s.direction);
    const Point to_reference = reference_ - p.mid;

    for (const double factor : kScaleFactors) {
      const double scale = s.length / p.length * factor;
      if (scale > options_.max_scale || scale < options_.min_scale) continue;

      const Similarity pose = PoseThrough(s.mid, rotation, scale, to_reference);
      const double score = score_of_(pose, {result_.best.score, options_.accept_score});
      ++result_.num_poses;
      if (score > result_.best.score) result_.best = {pose, score, i, j};
      if (score >= options_.accept_score) {
        stop_ = true;
        return;
      }
      if (deadline_.HasPassed()) {
        stop_ = result_.ran_out_of_time = true;
        return;
      }
    }
  }

  std::span<const LineSegment> pattern_;
  Point reference_;
  std::span<const LineSegment> scene_;
  Scorer& score_of_;
  const SegmentSearchOptions& options_;
  const Deadline& deadline_;
  CoarseSearchResult result_;
  bool stop_ = false;
};

/// The search ends only between pattern segments: a pass over the scene that has met the accept score
/// or the deadline is still finished, so that a better fit in it is not missed.
///
/// @param pattern,scene  segments, most points first.
/// @param reference      the pattern's reference point, pattern pixels.
/// @return  with the best hypothesis, the first of equals; one of score 0 with everything 0 when none scored
///          above 0.
template <PoseScoring Scorer>
CoarseSearchResult FindBestHypothesis(std::span<const LineSegment> pattern, Point reference,
                                      std::span<const LineSegment> scene, Scorer& score_of,
                                      const SegmentSearchOptions& options,
                                      const Deadline& deadline) {
  return CoarseSearch<Scorer>(pattern, reference, scene, score_of, options, deadline).Run();
}

}  // namespace orvandel
