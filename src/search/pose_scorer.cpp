#include "search/pose_scorer.h"

#include <algorithm>
#include <cstring>

#include "base/trigonometry.h"
#include "verify/direction_class.h"

namespace orvandel {
namespace {

/// The search's poses are probed one row off, whatever the direction.
constexpr FlankOffset kFlankInSearch = kFlankOffsets[0];

/// Sums of a few thousand credits are rounded by less than this.
constexpr double kRounding = 1e-6;

std::uint64_t BitsOf(double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

}  // namespace

PoseScorer::PoseScorer(const CPattVerify& verifier, const CEdgeImgComplement* edges,
                       Point reference)
    : verifier_(verifier),
      reference_(reference),
      num_points_(static_cast<std::size_t>(std::max(verifier.pointCount, 0))),
      probe_(ProbeRules(verifier), edges),
      sieve_(verifier, edges, reference),
      turned_(num_points_),
      credits_(num_points_) {}

double PoseScorer::operator()(const Pose& pose, const ScoreBar& bar) {
  if (rotation_ == 0 || BitsOf(pose.angle) != BitsOf(angle_)) TurnTo(pose.angle);
  const PointMapper mapper(pose.x, pose.y, turn_, pose.scale);
  if (!sieve_.Sift(mapper, MostImpossible(bar))) return kMissed;
  return SumCredits(mapper, bar);
}

void PoseScorer::TurnTo(double angle) {
  angle_ = angle;
  turn_ = SinCosOf(angle);
  ++rotation_;
  sieve_.TurnTo(angle);
}

/// The most points without credit that let a score clear the bar. No point has more credit than 1, and
/// sums of such credits are rounded to no more than their number, so a score is at most the percentage of
/// points that may have credit, to the bit.
std::int64_t PoseScorer::MostImpossible(const ScoreBar& bar) {
  if (has_last_bar_ && bar == last_bar_) return most_impossible_;
  std::size_t needed = 0;
  while (needed <= num_points_ && bar.IsMissedBy(Percent(static_cast<double>(needed))))
    ++needed;
  most_impossible_ = static_cast<std::int64_t>(num_points_) - static_cast<std::int64_t>(needed);
  last_bar_ = bar;
  has_last_bar_ = true;
  return most_impossible_;
}

/// Credits are found in the sieve's order, which tells soonest that a pose is bound to miss, and summed in
/// the order of the points; those without credit would add nothing.
double PoseScorer::SumCredits(const PointMapper& mapper, const ScoreBar& bar) {
  auto most = static_cast<double>(sieve_.NumPossible());
  const auto order = sieve_.Order();
  for (std::size_t place = 0; place < order.size(); ++place) {
    double& credit = credits_[order[place]];
    credit = 0.0;
    if (!sieve_.MayHaveCredit(place)) continue;
    credit = Credit(order[place], mapper);
    most -= 1.0 - credit;
    if (bar.IsMissedBy(Percent(most) + kRounding)) return kMissed;
  }
  double sum = 0.0;
  for (const double credit : credits_)
    sum += credit;
  return Percent(sum);
}

double PoseScorer::Credit(std::size_t point, const PointMapper& mapper) {
  const PixelIndex centre =
      mapper.Map(verifier_.pointX[point] - reference_.x, verifier_.pointY[point] - reference_.y);
  if (!probe_.IsAdmissible(centre)) return 0.0;
  const TurnedPoint& turned = Turned(point);
  if (turned.expected < 0) return 0.0;
  ++num_probes_;
  if (probe_.Matches(centre, turned.expected)) return 1.0;
  return probe_.CreditAlongNormal(centre, turned.expected, turned.steps, kFlankInSearch,
                                  num_probes_);
}

const PoseScorer::TurnedPoint& PoseScorer::Turned(std::size_t point) {
  TurnedPoint& turned = turned_[point];
  if (turned.rotation != rotation_) {
    turned.rotation = rotation_;
    turned.expected = ExpectedDirection(verifier_.pointDir[point], angle_);
    turned.steps = NormalSteps(turned.expected, probe_.Radius());
  }
  return turned;
}

}  // namespace orvandel
