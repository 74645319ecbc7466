#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"
#include "search/pose.h"
#include "search/pose_sieve.h"
#include "verify/probing.h"

namespace orvandel {

/// What a score must do to matter: beat the best so far, or reach the accept score.
struct ScoreBar {
  double best;
  double accept;

  /// False for a score that is not a number.
  bool IsMissedBy(double score) const { return score <= best && score < accept; }

  friend bool operator==(const ScoreBar&, const ScoreBar&) = default;
};

/// Scores poses of one pattern in one scene at the pattern's verification points, to the bit as
/// `CPattVerify::ScoreAtVerifyPoints` does, but with less work: points that cannot have credit are
/// sifted out, scores that are bound to miss the bar are not finished, and what depends on the rotation
/// alone is kept while the rotation stays.
class PoseScorer {
 public:
  /// A score that is known to miss the bar, and no more.
  static constexpr double kMissed = -1.0;

  /// @param verifier,edges  outlive the scorer and keep their content; `edges` may be null.
  /// @param reference       the pattern's reference point, pattern pixels.
  /// @throws std::bad_alloc
  PoseScorer(const CPattVerify& verifier, const CEdgeImgComplement* edges, Point reference);

  /// The score where it does not miss the bar, and else either the score or `kMissed`.
  double operator()(const Pose& pose, const ScoreBar& bar);

  Point Reference() const { return reference_; }

  /// What the scores so far have cost: looks at the reach map, and at pixels of the edge record.
  std::int64_t NumMapLooks() const { return sieve_.NumLooks(); }
  std::int64_t NumProbes() const { return num_probes_; }

 private:
  /// A verification point under the rotation in force.
  struct TurnedPoint {
    std::uint32_t rotation = 0;  ///< number of the rotation that this was worked out for
    double expected = 0.0;
    NormalSteps steps;
  };

  void TurnTo(double angle);
  std::int64_t MostImpossible(const ScoreBar& bar);
  double SumCredits(const PointMapper& mapper, const ScoreBar& bar);
  double Credit(std::size_t point, const PointMapper& mapper);
  const TurnedPoint& Turned(std::size_t point);
  double Percent(double sum) const { return sum * 100 / static_cast<double>(num_points_); }

  const CPattVerify& verifier_;
  Point reference_;
  std::size_t num_points_;
  EdgeProbe probe_;
  PoseSieve sieve_;

  double angle_ = 0.0;
  SinCos turn_;
  std::uint32_t rotation_ = 0;
  std::vector<TurnedPoint> turned_;
  std::vector<double> credits_;  ///< by point, of the pose being scored

  ScoreBar last_bar_{};
  std::int64_t most_impossible_ = 0;
  bool has_last_bar_ = false;

  std::int64_t num_probes_ = 0;
};

}  // namespace orvandel
