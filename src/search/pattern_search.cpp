// Finding the trained pattern in a scene.

#include "orvandel/classic/qrsis.h"
#include "search/coarse_search.h"
#include "search/contour_preparation.h"
#include "search/deadline.h"
#include "search/pose_scorer.h"
#include "search/refinement.h"

namespace {

constexpr int kDone = 0;
constexpr int kUntrained = 1;
constexpr int kNoContour = 2;
constexpr int kNotInitialized = 3;
constexpr int kNoSegment = 4;

constexpr int kEveryPoint = 0;

}  // namespace

int QRSIS::LookForIt(tImage* image) {
  if (pattern_image_ == nullptr) return kUntrained;

  const orvandel::Deadline deadline(orvandel::ProcessTickCounter(), timeout_us_);
  found_x_ = found_y_ = found_angle_ = found_scale_ = found_score_ = 0.0;
  if (scene_contours_ == nullptr) return kNotInitialized;

  const int num_contours = orvandel::PrepareContours(
      scene_contours_, image, {edge_threshold_, min_contour_size_, max_contour_size_});
  if (num_contours == 0) return kNoContour;
  if (deadline.HasPassed()) return kDone;

  const CEdgeImgComplement* edges = ctd_edgeIm(scene_contours_);
  const int num_segments = scene_lines_.Extract(scene_contours_);
  if (deadline.HasPassed()) return kDone;
  if (num_segments == 0) return kNoSegment;

  const auto& pattern = pattern_lines_.GetSegments();
  const auto& scene = scene_lines_.GetSegments();
  if (pattern.empty() || scene.empty()) return kNoSegment;

  orvandel::PoseScorer score_of(verifier_, edges, {reference_x_, reference_y_});
  const orvandel::CoarseOptions options = {min_scale_, max_scale_, accept_score_,
                                           pattern_lines_tried_};
  const orvandel::Hypothesis best =
      orvandel::FindBestHypothesis(pattern, scene, score_of, options, deadline);
  const orvandel::Pose pose = orvandel::RefinePose(best, pattern[best.pattern_segment],
                                                   scene[best.scene_segment], score_of);

  found_score_ = verifier_.ScoreAlongContours(pattern_contours_, edges, pose.x, pose.y, pose.angle,
                                              pose.scale, reference_x_, reference_y_, kEveryPoint);
  found_x_ = pose.x;
  found_y_ = pose.y;
  found_angle_ = pose.angle;
  found_scale_ = pose.scale;
  return kDone;
}
