#include "verify/pose_scorer.h"

#include <cstring>

namespace orvandel {
namespace {

/// Sums of a few thousand credits are rounded by less than this.
constexpr double kRounding = 1e-6;

std::uint64_t BitsOf(double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

}  // namespace

PoseScorer::PoseScorer(const VerificationPointsView& points, Point reference,
                       const CEdgeImgComplement* edges, const MatchOptions& options)
    : points_(points),
      reference_(reference),
      probe_(options, edges),
      rejection_test_(points, reference, edges, options),
      rotated_(points.size()),
      credits_(points.size()) {}

double PoseScorer::operator()(const Similarity& scene_from_pattern,
                              const ScoreThreshold& threshold) {
  const double angle = scene_from_pattern.angle;
  if (rotation_ == 0 || BitsOf(angle) != BitsOf(angle_)) SetRotation(angle);
  const PointMapper mapper(scene_from_pattern, sin_cos_);
  if (!rejection_test_.Passes(mapper, MostImpossible(threshold))) return kMissed;
  return SumCredits(mapper, threshold);
}

void PoseScorer::SetRotation(double angle) {
  angle_ = angle;
  sin_cos_ = SinCosOf(angle);
  ++rotation_;
  rejection_test_.SetRotation(angle);
}

/// The most points without credit that let a score clear the threshold. No point has more credit than 1, and
/// sums of such credits are rounded to no more than their number, so a score is at most the percentage of
/// points that may have credit, to the bit.
std::int64_t PoseScorer::MostImpossible(const ScoreThreshold& threshold) {
  if (has_last_threshold_ && threshold == last_threshold_) return most_impossible_;
  const std::size_t num_points = points_.size();
  std::size_t needed = 0;
  while (needed <= num_points && threshold.IsMissedBy(Percent(static_cast<double>(needed))))
    ++needed;
  most_impossible_ = static_cast<std::int64_t>(num_points) - static_cast<std::int64_t>(needed);
  last_threshold_ = threshold;
  has_last_threshold_ = true;
  return most_impossible_;
}

/// Credits are found in the rejection test's order, which tells soonest that a pose is bound to miss, and
/// summed in the order of the points; those without credit would add nothing.
double PoseScorer::SumCredits(const PointMapper& mapper, const ScoreThreshold& threshold) {
  auto most = static_cast<double>(rejection_test_.NumPossible());
  const auto order = rejection_test_.Order();
  for (std::size_t place = 0; place < order.size(); ++place) {
    double& credit = credits_[order[place]];
    credit = 0.0;
    if (!rejection_test_.MayHaveCredit(place)) continue;
    credit = Credit(order[place], mapper);
    most -= 1.0 - credit;
    if (threshold.IsMissedBy(Percent(most) + kRounding)) return kMissed;
  }
  double sum = 0.0;
  for (const double credit : credits_)
    sum += credit;
  return Percent(sum);
}

double PoseScorer::Credit(std::size_t point, const PointMapper& mapper) {
  const PixelIndex centre = mapper.Map(Point{points_.x[point], points_.y[point]} - reference_);
  if (!probe_.IsAdmissible(centre)) return 0.0;
  const RotatedPoint& rotated = Rotated(point);
  if (rotated.expected < 0) return 0.0;
  ++num_probes_;
  if (probe_.Matches(centre, rotated.expected)) return 1.0;
  return probe_.CreditAlongNormal(centre, rotated.expected, rotated.steps, kNeighbourInSearch,
                                  num_probes_);
}

const PoseScorer::RotatedPoint& PoseScorer::Rotated(std::size_t point) {
  RotatedPoint& rotated = rotated_[point];
  if (rotated.rotation != rotation_) {
    rotated.rotation = rotation_;
    rotated.expected = ExpectedDirection(points_.direction[point], angle_);
    rotated.steps = NormalSteps(rotated.expected, probe_.Radius());
  }
  return rotated;
}

}  // namespace orvandel
