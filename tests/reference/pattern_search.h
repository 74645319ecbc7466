#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "base/trigonometry.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/imgutil_i.h"
#include "orvandel/classic/line_segment.h"
#include "orvandel/classic/patt_verify.h"
#include "tests/reference/scoring.h"
#include "tests/reference/stages.h"
#include "tests/search/search_results.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {

/// Training and search as they are told, step after step, on stages that are the library's own, through the
/// published interface, or the reference forms of all of them.

struct ReferenceParameters {
  int edge_threshold = 16;
  int min_size = 10;
  int max_size = 100000;
  double accept_score = 80;
  double min_scale = 0.25;
  double max_scale = 4;
  double verification_fraction = 0.06;
  int verification_cap = 20;
  int pattern_lines_tried = 5;
};

inline void PrepareContours(const Stages& stages, void* set, tImage* image,
                            const ReferenceParameters& parameters) {
  stages.crawl(set, image, parameters.edge_threshold, parameters.min_size, parameters.max_size);
  stages.smooth(set);
  stages.resample(set);
  ctd_sort(set, 1);
}

struct ReferencePattern {
  ContourHandle contours = MakeEmptySet();
  std::vector<CLineSegment> segments;
  CPattVerify verifier;
  double ref_x = 0;
  double ref_y = 0;
};

/// Learns a pattern; the image is overwritten. The status is that of `TrainIt`.
inline int ReferenceTrain(ReferencePattern& pattern, tImage* image,
                          const ReferenceParameters& parameters,
                          const Stages& stages = kLibraryStages) {
  void* set = pattern.contours.get();
  PrepareContours(stages, set, image, parameters);
  if (ctd_contour_count(set) == 0) return 1;
  ctd_centroid(set, &pattern.ref_x, &pattern.ref_y);
  pattern.segments = stages.extract_segments(set);
  if (pattern.segments.empty()) return 4;
  pattern.verifier.ChooseVerifyPoints(set, parameters.verification_fraction,
                                      parameters.verification_cap);
  return 0;
}

/// Time tests of a search: true once the budget is spent.
using ReferenceClock = std::function<bool()>;

class ReferenceSearch {
 public:
  ReferenceSearch(const ReferencePattern& pattern, const ReferenceParameters& parameters,
                  const Stages& stages = kLibraryStages)
      : pattern_(pattern), parameters_(parameters), stages_(stages) {}

  /// Searches a scene; the image is overwritten. An image that the crawl refuses leaves the scene of
  /// the call before.
  Found LookForIt(tImage* scene, const ReferenceClock& past_deadline) {
    best_ = {};
    num_poses_ = 0;
    void* set = scene_contours_.get();
    PrepareContours(stages_, set, scene, parameters_);
    if (ctd_contour_count(set) == 0) return {2};
    if (past_deadline()) return {0};
    edges_ = ctd_edgeIm(set);
    scene_segments_ = stages_.extract_segments(set);
    if (past_deadline()) return {0};
    if (scene_segments_.empty()) return {4};

    CoarseSearch(past_deadline);
    Refine();
    const double score = stages_.score_along_contours(pattern_.verifier, pattern_.contours.get(),
                                                      *edges_, PoseOf(best_));
    return {0, best_.x, best_.y, best_.angle, best_.scale, score};
  }

  /// Of the best hypothesis, before the refinement.
  double coarse_scale() const { return coarse_scale_; }
  /// Scored before the refinement.
  int num_poses() const { return num_poses_; }

 private:
  struct Hypothesis {
    double x = 0;
    double y = 0;
    double angle = 0;
    double scale = 0;
    double score = 0;
    std::size_t i = 0;  ///< pattern segment
    std::size_t j = 0;  ///< scene segment
  };

  std::size_t NumPatternSegments() const { return pattern_.segments.size(); }
  std::size_t NumSceneSegments() const { return scene_segments_.size(); }
  const CLineSegment& PatternSegment(std::size_t i) const { return pattern_.segments[i]; }
  const CLineSegment& SceneSegment(std::size_t j) const { return scene_segments_[j]; }

  ReferencePose PoseOf(const Hypothesis& h) const {
    return {h.x, h.y, h.angle, h.scale, pattern_.ref_x, pattern_.ref_y};
  }

  /// The hypothesis that lays the midpoint of pattern segment i on an anchor in the scene, scored.
  Hypothesis ScoredAt(double anchor_x, double anchor_y, double angle, double scale, std::size_t i,
                      std::size_t j) {
    const double dx = pattern_.ref_x - PatternSegment(i).mid_x;
    const double dy = pattern_.ref_y - PatternSegment(i).mid_y;
    const double c = Cos(angle);
    const double n = Sin(angle);
    Hypothesis h;
    h.x = scale * (c * dx - n * dy) + anchor_x;
    h.y = scale * (n * dx + c * dy) + anchor_y;
    h.angle = angle;
    h.scale = scale;
    h.i = i;
    h.j = j;
    h.score = stages_.score_at_points(pattern_.verifier, *edges_, PoseOf(h));
    return h;
  }

  void CoarseSearch(const ReferenceClock& past_deadline) {
    std::size_t num_tried = NumPatternSegments();
    if (num_tried > static_cast<std::size_t>(parameters_.pattern_lines_tried))
      num_tried = static_cast<std::size_t>(parameters_.pattern_lines_tried);
    bool stop = false;
    for (std::size_t i = 0; i < num_tried && !stop; ++i) {
      for (std::size_t j = 0; j < NumSceneSegments(); ++j)
        stop = TryPair(i, j, past_deadline) || stop;  // the pass goes on to its end
    }
    coarse_scale_ = best_.scale;
  }

  /// Tries the five scales of a pair; returns whether the search shall stop after this pass.
  bool TryPair(std::size_t i, std::size_t j, const ReferenceClock& past_deadline) {
    const CLineSegment& p = PatternSegment(i);
    const CLineSegment& s = SceneSegment(j);
    for (const double factor : {1.0, 1.1, 0.9, 1.2, 0.8}) {
      const double scale = s.length / p.length * factor;
      if (scale > parameters_.max_scale || scale < parameters_.min_scale) continue;
      const double angle = p.direction - s.direction;
      const Hypothesis h = ScoredAt(s.mid_x, s.mid_y, angle, scale, i, j);
      ++num_poses_;
      if (h.score > best_.score) best_ = h;
      if (h.score >= parameters_.accept_score) return true;
      if (past_deadline()) return true;
    }
    return false;
  }

  void Refine() {
    static constexpr double kScaleSteps[8] = {0.1,     0.05,     0.025,     0.0125,
                                              0.00625, 0.003125, 0.0015625, 0.00078125};
    static constexpr double kShiftSteps[8] = {10.0,  5.0,    2.5,     1.25,
                                              0.625, 0.3125, 0.15625, 0.078125};
    double anchor_x = SceneSegment(best_.j).mid_x;
    double anchor_y = SceneSegment(best_.j).mid_y;
    for (int r = 0; r < 8; ++r) {
      RefineScale(anchor_x, anchor_y, kScaleSteps[r]);
      RefineShift(anchor_x, anchor_y, kShiftSteps[r]);
    }
  }

  void RefineScale(double anchor_x, double anchor_y, double step) {
    const Hypothesis now = best_;
    for (const double scale : {now.scale - step, now.scale + step}) {
      const Hypothesis h = ScoredAt(anchor_x, anchor_y, now.angle, scale, now.i, now.j);
      if (h.score > best_.score) best_ = h;
    }
  }

  void RefineShift(double& anchor_x, double& anchor_y, double step) {
    const Hypothesis now = best_;
    const double c = Cos(now.angle);
    const double n = Sin(now.angle);
    const double back[] = {anchor_x - step * c, anchor_y - step * n};
    const double forth[] = {anchor_x + step * c, anchor_y + step * n};
    for (const auto& anchor : {back, forth}) {
      const Hypothesis h = ScoredAt(anchor[0], anchor[1], now.angle, now.scale, now.i, now.j);
      if (!(h.score > best_.score)) continue;
      best_ = h;
      anchor_x = anchor[0];
      anchor_y = anchor[1];
    }
  }

  const ReferencePattern& pattern_;
  ReferenceParameters parameters_;
  const Stages& stages_;
  ContourHandle scene_contours_ = MakeEmptySet();
  std::vector<CLineSegment> scene_segments_;
  const CEdgeImgComplement* edges_ = nullptr;
  Hypothesis best_;
  double coarse_scale_ = 0;
  int num_poses_ = 0;
};

}  // namespace orvandel::test
