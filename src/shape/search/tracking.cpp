#include "shape/search/tracking.h"

#include <algorithm>
#include <cmath>

#include "shape/search/pose_solver.h"
#include "shape/search/visibility.h"

namespace orvandel::shape {
namespace {

PointArrays ArraysOf(const EdgePoints& points) {
  return {points.x.data(),        points.y.data(), points.normal_x.data(),
          points.normal_y.data(), points.x.size(), points.size};
}

LevelFrame FrameOf(const LevelPose& pose) {
  const SinCos turn = SinCosOf(pose.angle);
  return {static_cast<float>(pose.x),
          static_cast<float>(pose.y),
          static_cast<float>(pose.scale * turn.cosine),
          static_cast<float>(pose.scale * turn.sine),
          static_cast<float>(turn.cosine),
          static_cast<float>(turn.sine)};
}

EdgeSampling SamplingOf(const GradientPlane& gradients, const TrackingStep& step) {
  EdgeSampling sampling = {};
  sampling.packed = gradients.packed.data();
  sampling.width = gradients.width;
  sampling.height = gradients.height;
  sampling.least_slope = step.least_slope;
  sampling.least_cosine_square = step.least_cosine * step.least_cosine;
  sampling.sign = step.sign == EdgeSign::kSame       ? 1.0F
                  : step.sign == EdgeSign::kReversed ? -1.0F
                                                     : 0.0F;
  sampling.range = std::clamp(step.range, 1, static_cast<int>(kMaxRange));
  return sampling;
}

/// Normal equations of (x, y, turn, grow). Turn and grow are scaled to pixels at the typical arm, so that one damping suits
/// all four.
struct NormalEquations {
  PoseMatrix matrix;
  PoseVector right = {};
  double arm = 1.0;
};

NormalEquations EquationsOf(const std::array<double, kNumFitSums>& s, const TrackingStep& step) {
  NormalEquations equations;
  const double weight = std::max(s[kSumWeight], 1e-9);
  const double arm = std::sqrt(std::max((s[kSumTT] + s[kSumGG]) / weight, 1.0));
  const double a = 1.0 / arm;
  equations.arm = arm;
  equations.matrix = {{{s[kSumXX], s[kSumXY], s[kSumXT] * a, s[kSumXG] * a},
                       {s[kSumXY], s[kSumYY], s[kSumYT] * a, s[kSumYG] * a},
                       {s[kSumXT] * a, s[kSumYT] * a, s[kSumTT] * a * a, s[kSumTG] * a * a},
                       {s[kSumXG] * a, s[kSumYG] * a, s[kSumTG] * a * a, s[kSumGG] * a * a}}};
  equations.right = {s[kSumX], s[kSumY], s[kSumT] * a, s[kSumG] * a};
  for (std::size_t i = 0; i < 4; ++i)
    equations.matrix[i][i] += (step.damping + 1e-6) * weight + 1e-9;
  const auto hold = [&equations](std::size_t held) {
    for (std::size_t i = 0; i < 4; ++i)
      equations.matrix[i][held] = equations.matrix[held][i] = 0.0;
    equations.matrix[held][held] = 1.0;
    equations.right[held] = 0.0;
  };
  if (step.holds_angle) hold(2);
  if (step.holds_scale) hold(3);
  return equations;
}

/// The scale changes by a factor e^g; to third order, which differs by 4e-6 at the largest step.
double GrownBy(double g) {
  return 1.0 + g * (1.0 + g * (0.5 + g / 6.0));
}

}  // namespace

MeasuredArrays TrackingBuffers::For(std::size_t padded) {
  for (auto& array : arrays) {
    if (array.size() < padded) array.resize(padded);
  }
  return {arrays[0].data(), arrays[1].data(), arrays[2].data(), arrays[3].data(),
          arrays[4].data(), arrays[5].data(), arrays[6].data(), arrays[7].data()};
}

double TrackingFit::Rank() const {
  return coverage * std::sqrt(visible) * std::min(visible / kLeastVisible, 1.0);
}

void Measure(const EdgePoints& points, const GradientPlane& gradients, const LevelPose& pose,
             const TrackingStep& step, const MeasuredArrays& measured) {
  const TrackingKernels& kernels = TrackingKernelsOf(ActiveSimdLevel());
  const auto measure = step.is_nearest ? kernels.measure_nearest : kernels.measure_between;
  measure(ArraysOf(points), FrameOf(pose), SamplingOf(gradients, step), measured);
}

TrackingFit Track(const EdgePoints& points, const GradientPlane& gradients,
                  const TrackingStep& step, TrackingBuffers& buffers, LevelPose& pose) {
  const MeasuredArrays measured = buffers.For(points.x.size());
  Measure(points, gradients, pose, step, measured);
  const TrackingKernels& kernels = TrackingKernelsOf(ActiveSimdLevel());
  std::array<double, kNumFitSums> sums = {};
  kernels.sum_fit(measured, points.size, points.x.size(), step.reach, sums.data());
  const NormalEquations equations = EquationsOf(sums, step);
  PoseVector change = Solved(equations.matrix, equations.right);

  // No step is larger than the stretch in which edges were looked for.
  const auto furthest = static_cast<double>(step.range + 1);
  for (double& c : change)
    c = std::clamp(c, -furthest, furthest);
  change[2] /= equations.arm;
  change[3] = std::clamp(change[3] / equations.arm, -0.25, 0.25);
  pose.x += change[0];
  pose.y += change[1];
  pose.angle += change[2];
  pose.scale *= GrownBy(change[3]);

  const float moved[4] = {static_cast<float>(change[0]), static_cast<float>(change[1]),
                          static_cast<float>(change[2]), static_cast<float>(change[3])};
  std::array<double, kNumCreditSums> credit = {};
  kernels.sum_credit(measured, points.size, points.x.size(), moved, credit.data());
  TrackingFit fit;
  const double found = std::max(credit[kSumFound], 1.0);
  fit.coverage = credit[kSumCredit] / std::max(credit[kSumVisible], 1.0);
  fit.visible = credit[kSumVisible] / static_cast<double>(points.size);
  fit.slope = credit[kSumSlope] / found;
  fit.rms = std::sqrt(credit[kSumFoundSquare] / found);
  fit.num_found = static_cast<int>(credit[kSumFound]);
  return fit;
}

std::array<double, 16> CovarianceAt(const EdgePoints& points, const GradientPlane& gradients,
                                    const TrackingStep& step, int level, TrackingBuffers& buffers,
                                    const LevelPose& pose) {
  const MeasuredArrays measured = buffers.For(points.x.size());
  Measure(points, gradients, pose, step, measured);
  std::array<double, kNumFitSums> sums = {};
  TrackingKernelsOf(ActiveSimdLevel())
      .sum_fit(measured, points.size, points.x.size(), step.reach, sums.data());
  const NormalEquations equations = EquationsOf(sums, step);
  const double weight = std::max(sums[kSumWeight], 1e-9);
  const double variance = sums[kSumSquare] / weight;
  const auto pixels = static_cast<double>(1 << level);
  const PoseVector unit = {pixels, pixels, step.holds_angle ? 0.0 : 1.0 / equations.arm,
                           step.holds_scale ? 0.0 : pose.scale * pixels / equations.arm};
  std::array<double, 16> covariance = {};
  for (std::size_t column = 0; column < 4; ++column) {
    PoseVector axis = {};
    axis[column] = 1.0;
    const PoseVector solved = Solved(equations.matrix, axis);
    for (std::size_t row = 0; row < 4; ++row)
      covariance[row * 4 + column] = variance * solved[row] * unit[row] * unit[column];
  }
  return covariance;
}

}  // namespace orvandel::shape
