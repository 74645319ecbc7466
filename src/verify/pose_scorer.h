#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "base/trigonometry.h"
#include "orvandel/classic/edge_record.h"
#include "verify/edge_probe.h"
#include "verify/match_options.h"
#include "verify/rejection_test.h"
#include "verify/score_threshold.h"
#include "verify/verification_points.h"

namespace orvandel {

/// Scores poses of one pattern in one scene at the pattern's verification points, to the bit as
/// `ScoreAtPoints` does, but with less work: points that cannot have credit are passed over, scores that are
/// bound to miss the threshold are not finished, and what depends on the rotation alone is cached while the
/// rotation stays.
class PoseScorer {
 public:
  /// A score that is known to miss the threshold, and no more.
  static constexpr double kMissed = -1.0;

  /// @param points     their arrays outlive the scorer and keep their content.
  /// @param reference  the pattern's reference point, pattern pixels.
  /// @param edges      outlives the scorer and keeps its content; may be null.
  /// @throws std::bad_alloc
  PoseScorer(const VerificationPointsView& points, Point reference, const CEdgeImgComplement* edges,
             const MatchOptions& options);

  /// The score where it does not miss the threshold, and else either the score or `kMissed`.
  double operator()(const Similarity& scene_from_pattern, const ScoreThreshold& threshold);

  /// What the scores so far have cost: looks at the spread orientation map, and at pixels of the edge
  /// record.
  std::int64_t NumMapLooks() const { return rejection_test_.NumLooks(); }
  std::int64_t NumProbes() const { return num_probes_; }

 private:
  /// A verification point under the rotation in force.
  struct RotatedPoint {
    std::uint32_t rotation = 0;  ///< number of the rotation that this was worked out for
    double expected = 0.0;
    NormalSteps steps;
  };

  void SetRotation(double angle);
  std::int64_t MostImpossible(const ScoreThreshold& threshold);
  double SumCredits(const PointMapper& mapper, const ScoreThreshold& threshold);
  double Credit(std::size_t point, const PointMapper& mapper);
  const RotatedPoint& Rotated(std::size_t point);
  double Percent(double sum) const { return sum * 100 / static_cast<double>(points_.size()); }

  VerificationPointsView points_;
  Point reference_;
  EdgeProbe probe_;
  RejectionTest rejection_test_;

  double angle_ = 0.0;
  SinCos sin_cos_;
  std::uint32_t rotation_ = 0;
  std::vector<RotatedPoint> rotated_;
  std::vector<double> credits_;  ///< by point, of the pose being scored

  ScoreThreshold last_threshold_{};
  std::int64_t most_impossible_ = 0;
  bool has_last_threshold_ = false;

  std::int64_t num_probes_ = 0;
};

}  // namespace orvandel
