#include "shape/search/scoring.h"

#include <algorithm>
#include <cmath>

#include "base/logarithm.h"
#include "shape/search/visibility.h"

namespace orvandel::shape {
namespace {

/// Offsets and log contrast ratios at which an edge gets no credit any more.
constexpr double kContrastReach = 2.0;

/// Where either sign will do, edges against the majority's count so much.
constexpr double kMinorityCredit = 0.6;

double MedianOf(std::vector<float>& values) {
  if (values.empty()) return 0.0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return static_cast<double>(*middle);
}

/// What a pattern misses by where chance imitates it to 0.13, as well as any in photographs: it keeps its score.
constexpr double kTypicalMiss = 0.87;

/// Sums of c n n', and the ratio of its smaller to its larger eigenvalue.
struct Spread {
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;

  void Add(double c, double nx, double ny) {
    xx += c * nx * nx;
    xy += c * nx * ny;
    yy += c * ny * ny;
  }
  double Evenness() const {
    const double mean = 0.5 * (xx + yy);
    const double half = 0.5 * (xx - yy);
    const double root = std::sqrt(half * half + xy * xy);
    return mean > 0.0 ? std::max(mean - root, 0.0) / (mean + root) : 0.0;
  }
};

}  // namespace

PoseScore ScorePose(const EdgePoints& points, const GradientPlane& gradients,
                    const TrackingStep& step, TrackingBuffers& tracking, ScoringBuffers& buffers,
                    const LevelPose& pose) {
  const MeasuredArrays measured = tracking.For(points.x.size());
  Measure(points, gradients, pose, step, measured);
  buffers.log_ratios.assign(points.size, 0.0F);
  buffers.sorted.clear();
  int num_visible = 0;
  int num_reversed = 0;
  constexpr auto kReach = static_cast<double>(kCreditReach);
  for (std::size_t i = 0; i < points.size; ++i) {
    num_visible += measured.visible[i] > 0.0F ? 1 : 0;
    if (measured.found[i] == 0.0F || std::abs(measured.offset[i]) >= kCreditReach) continue;
    const auto ratio = static_cast<double>(std::abs(measured.slope[i]) / points.strength[i]);
    buffers.log_ratios[i] = static_cast<float>(NaturalLogarithm(ratio));
    buffers.sorted.push_back(buffers.log_ratios[i]);
    num_reversed += measured.slope[i] < 0.0F ? 1 : 0;
  }
  PoseScore score;
  const auto num_found = static_cast<int>(buffers.sorted.size());
  score.visible = static_cast<double>(num_visible) / static_cast<double>(points.size);
  if (num_found == 0) return score;
  score.is_reversed = 2 * num_reversed > num_found;
  const double median = MedianOf(buffers.sorted);
  score.contrast = ExponentialOf(median);

  double credits = 0.0;
  double squares = 0.0;
  double weights = 0.0;
  Spread seen;
  Spread expected;
  for (std::size_t i = 0; i < points.size; ++i) {
    const auto nx = static_cast<double>(measured.normal_x[i]);
    const auto ny = static_cast<double>(measured.normal_y[i]);
    if (measured.visible[i] > 0.0F) expected.Add(1.0, nx, ny);
    if (measured.found[i] == 0.0F || std::abs(measured.offset[i]) >= kCreditReach) continue;
    const auto t = static_cast<double>(measured.offset[i]);
    const double u = t / kReach;
    const double r = (static_cast<double>(buffers.log_ratios[i]) - median) / kContrastReach;
    double credit = (1.0 - u * u) * std::max(1.0 - r * r, 0.0);
    if ((measured.slope[i] < 0.0F) != score.is_reversed) credit *= kMinorityCredit;
    credits += credit;
    squares += credit * t * t;
    weights += credit;
    seen.Add(credit, nx, ny);
  }
  score.rms = weights > 0.0 ? std::sqrt(squares / weights) : 0.0;
  score.coverage = credits / std::max(static_cast<double>(num_visible), 1.0);
  const double counted =
      std::max(static_cast<double>(num_visible), kLeastVisible * static_cast<double>(points.size));
  // A little is added, so that a pattern of one direction is not divided by nothing.
  constexpr double kAdded = 0.02;
  const double evenness =
      std::min((seen.Evenness() + kAdded) / (expected.Evenness() + kAdded), 1.0);
  score.raw = credits / counted * (1.0 - 0.5 * std::min(score.rms, 1.0)) *
              std::sqrt(score.visible) * std::sqrt(std::sqrt(evenness));
  return score;
}

double ScoreAboveChance(double raw, double chance) {
  if (!(raw > 0.0))
    return 0.0;  // nothing of the pattern was found, which chance cannot make better
  return std::max(0.0, 1.0 - kTypicalMiss * (1.0 - raw) / (1.0 - chance));
}

double RawScoreOf(double score, double chance) {
  return 1.0 - (1.0 - score) * (1.0 - chance) / kTypicalMiss;
}

}  // namespace orvandel::shape
