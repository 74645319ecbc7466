#include "shape/refinement/pose_covariance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "shape/refinement/spline_stencils.h"

namespace orvandel::shape {
namespace {

using Buffers = RefinementWorkspace::Buffers;

/// Sums of squares of the weights of a sample and of a pattern value: (151/315)^2 in the mean over
/// positions, and (18/36)^2.
constexpr double kSampleSquare = (151.0 / 315.0) * (151.0 / 315.0);
constexpr double kPatternSquare = 0.25;
/// Those of the kernel of doubled width are a quarter.
constexpr double kWideShare = 0.25;

/// Variance of the noise of single pixels, grey levels squared.
struct PixelVariances {
  double scene = 0.0;  ///< at the residuals' base noise
  double pattern = 0.0;
};

/// Shares the residuals' variance out. What was learnt of the pattern's noise may be texture, so it is
/// taken no larger than the residuals allow.
PixelVariances ShareNoise(const RefinementModel& model, const StripFit& fit, bool is_wide) {
  const double gain = fit.solution.by_column[kPattern];
  const double soften = kSplineVariance / (kSplineVariance + std::max(fit.blur, 0.0));
  const double in_pattern = kPatternSquare * soften * gain * gain;
  const double in_scene = kSampleSquare * (is_wide ? kWideShare : 1.0);
  const double least_scene = std::ldexp(kRoundingVariance, -2 * fit.level);
  const double left = std::max(fit.noise.base - in_scene * least_scene, 0.0);
  PixelVariances variances;
  variances.pattern = in_pattern > 0.0
                          ? std::clamp(left / in_pattern, kRoundingVariance, model.noise_variance)
                          : kRoundingVariance;
  variances.scene =
      std::max((fit.noise.base - in_pattern * variances.pattern) / in_scene, least_scene);
  return variances;
}

using InfluenceFactors = float[kNumPoseColumns][kNumColumns];

/// How the columns at a pixel make its influence on the pose, for the pixels of a stretch.
void FindFactors(const PoseSolution& solution, const LightPrior& prior, const StretchSums& sums,
                 const StretchLight& light, InfluenceFactors& factors) {
  double exact[kNumPoseColumns][kNumColumns] = {};
  for (int l = 0; l < solution.fitted.count; ++l) {
    const Column column = solution.fitted.columns[l];
    const double size = light.trust * (column < kPattern ? light.derivative_gain : 1.0);
    const Projection projection = Project(sums, PriorOf(light, prior), column);
    for (int k = 0; k < solution.fitted.count; ++k) {
      const Column pose = solution.fitted.columns[k];
      if (pose >= kNumPoseColumns) continue;
      const double moved = size * solution.inverse.at[k][l];
      exact[pose][column] += moved;
      exact[pose][kPattern] -= moved * projection.pattern;
      exact[pose][kOne] -= moved * (projection.one - projection.pattern * sums.PatternMean());
    }
  }
  for (int k = 0; k < kNumPoseColumns; ++k) {
    for (int j = 0; j < kNumColumns; ++j)
      factors[k][j] = static_cast<float>(exact[k][j]);
  }
}

/// Finds each pixel's influence, and by how much each stretch's residuals pull at the pose.
void FindInfluences(const Strip& strip, const StripKernels& kernels, const StripFit& fit,
                    Buffers& buffers) {
  const auto columns = buffers.ColumnPointers();
  float* influence[kNumPoseColumns];
  for (std::size_t k = 0; k < kNumPoseColumns; ++k)
    influence[k] = buffers.influence[k].data();
  const auto find_influence =
      fit.shape == BlurShape::kLine ? kernels.find_influence : kernels.find_round_influence;
  for (std::size_t t = 0; t < strip.stretches.size(); ++t) {
    InfluenceFactors factors = {};
    if (buffers.lights[t].trust > 0.0)
      FindFactors(fit.solution, fit.prior, buffers.sums[t], buffers.lights[t], factors);
    find_influence(columns.data(), factors, buffers.weights.data(), buffers.residuals.data(),
                   strip.stretches[t].first, strip.stretches[t].count, influence,
                   buffers.pulls[t].data());
  }
}

/// Deviation of the pixel noise at each sample, relative to `variance` at the base.
void FindSceneStrength(const StripFit& fit, double variance, Buffers& buffers) {
  if (!(fit.noise.per_grey > 0.0)) {
    std::fill(buffers.strength.begin(), buffers.strength.end(),
              static_cast<float>(std::sqrt(variance)));
    return;
  }
  const double per_grey = fit.noise.base > 0.0 ? fit.noise.per_grey / fit.noise.base : 0.0;
  const double black = -buffers.source.offset;
  for (std::size_t i = 0; i < buffers.strength.size(); ++i) {
    const double grey = std::max(static_cast<double>(buffers.columns[kScene][i]) - black, 0.0);
    buffers.strength[i] = static_cast<float>(std::sqrt(variance * (1.0 + per_grey * grey)));
  }
}

void FindPatternStrength(const Strip& strip, double variance, Buffers& buffers) {
  for (std::size_t t = 0; t < strip.stretches.size(); ++t) {
    const Stretch& stretch = strip.stretches[t];
    const auto strength = static_cast<float>(buffers.lights[t].gain * std::sqrt(variance));
    std::fill_n(buffers.strength.begin() + stretch.first, stretch.count, strength);
  }
}

InfluenceCells OpenCells(int width, int height, Buffers& buffers) {
  const int runs = (width + kCellRun - 1) / kCellRun;
  const auto num_runs = static_cast<std::size_t>(runs) * static_cast<std::size_t>(height);
  // Cells and marks are 0 between uses, so that only new ones need clearing.
  const std::size_t num_floats = num_runs * kCellRun * kNumPoseColumns;
  if (buffers.marks.size() < num_runs) buffers.marks.resize(num_runs);
  if (buffers.cells.size() < num_floats) buffers.cells.resize(num_floats);
  return {buffers.cells.data(), buffers.marks.data(), runs * kCellRun, height};
}

void AddSceneNoise(const Strip& strip, const StripKernels& kernels, const StripFit& fit,
                   Buffers& buffers, double* products) {
  const float* const influence[kNumPoseColumns] = {
      buffers.influence[0].data(), buffers.influence[1].data(), buffers.influence[2].data(),
      buffers.influence[3].data()};
  if (strip.thinning >= kSparseThinning) {
    const bool is_wide = buffers.source.is_wide;
    const double square = kSampleSquare * (is_wide ? kWideShare : 1.0);
    const double scale = AtLevel(fit.sampled_pose, fit.level).scale;
    kernels.sum_influence(strip.Size(), influence, buffers.strength.data(),
                          square * NoiseCorrelation(strip, scale, is_wide), products);
    return;
  }
  const SourceBox box = BoxInSource(buffers.source, strip, fit.sampled_pose);
  if (box.width <= 0 || box.height <= 0) return;
  ImagePlace place = PlaceIn(buffers.source, fit.sampled_pose);
  place.x -= box.left;
  place.y -= box.top;
  const InfluenceCells cells = OpenCells(box.width, box.height, buffers);
  const auto spread =
      buffers.source.is_wide ? kernels.spread_over_scene_wide : kernels.spread_over_scene;
  spread(place, strip.x.data(), strip.y.data(), strip.Size(), influence, buffers.strength.data(),
         cells);
  kernels.sum_cells(cells, products);
}

void AddPatternNoise(const Strip& strip, const StripKernels& kernels, Buffers& buffers,
                     double* products) {
  const float* const influence[kNumPoseColumns] = {
      buffers.influence[0].data(), buffers.influence[1].data(), buffers.influence[2].data(),
      buffers.influence[3].data()};
  if (strip.errors.empty()) {
    kernels.sum_influence(strip.Size(), influence, buffers.strength.data(), kPatternSquare,
                          products);
    return;
  }
  const int num_cells = (strip.num_errors + kCellRun - 1) / kCellRun * kCellRun;
  const auto num_floats = static_cast<std::size_t>(num_cells) * kNumPoseColumns;
  if (buffers.cells.size() < num_floats) buffers.cells.resize(num_floats);
  kernels.sum_over_pattern(strip.errors.data(), strip.Size(), influence, buffers.strength.data(),
                           buffers.cells.data(), num_cells, products);
}

/// Mean over the stretches of the square of their pull, in units of the covariance: 1 where noise is all
/// that pulls.
double Inconsistency(const FitCovariance& covariance, const Buffers& buffers) {
  SymmetricMatrix inverse;
  double scale[kNumPoseColumns];
  for (int i = 0; i < kNumPoseColumns; ++i) {
    for (int j = 0; j < kNumPoseColumns; ++j)
      inverse.at[i][j] = covariance.at[i][j];
    scale[i] = inverse.at[i][i];
  }
  const int rank = InvertBySweeping(inverse, kNumPoseColumns, scale);
  double sum = 0.0;
  int count = 0;
  for (std::size_t t = 0; t < buffers.lights.size(); ++t) {
    if (!(buffers.lights[t].trust > 0.0)) continue;
    ++count;
    for (int i = 0; i < kNumPoseColumns; ++i) {
      for (int j = 0; j < kNumPoseColumns; ++j)
        sum += buffers.pulls[t][static_cast<std::size_t>(i)] * inverse.at[i][j] *
               buffers.pulls[t][static_cast<std::size_t>(j)];
    }
  }
  if (rank == 0 || count <= rank) return 1.0;
  // The pose takes `rank` of the pulls' degrees of freedom.
  return sum / rank * count / (count - rank);
}

}  // namespace

FitCovariance PropagateNoise(const RefinementModel& model, const StripFit& fit, Buffers& buffers) {
  const Strip& strip = StripOf(model, fit);
  const StripKernels& kernels = StripKernelsOf(ActiveSimdLevel());
  buffers.ResizeForCovariance(strip);
  FindInfluences(strip, kernels, fit, buffers);
  const PixelVariances variances = ShareNoise(model, fit, buffers.source.is_wide);
  double products[kNumPoseColumns * kNumPoseColumns] = {};
  FindSceneStrength(fit, variances.scene, buffers);
  AddSceneNoise(strip, kernels, fit, buffers, products);
  FindPatternStrength(strip, variances.pattern, buffers);
  AddPatternNoise(strip, kernels, buffers, products);
  FitCovariance covariance;
  for (int i = 0; i < kNumPoseColumns; ++i) {
    for (int j = 0; j < kNumPoseColumns; ++j)
      covariance.at[i][j] = products[i * kNumPoseColumns + j];
  }
  covariance.inconsistency = Inconsistency(covariance, buffers);
  const double larger = std::max(covariance.inconsistency, 1.0);
  for (auto& row : covariance.at) {
    for (double& entry : row)
      entry *= larger;
  }
  return covariance;
}

PoseCovariance InScene(const FitCovariance& covariance, const Similarity& scene_from_pattern,
                       double radius) {
  const SinCos turn = SinCosOf(scene_from_pattern.angle);
  const double scale = scene_from_pattern.scale;
  const double map[4][4] = {{scale * turn.cosine, -scale * turn.sine, 0.0, 0.0},
                            {scale * turn.sine, scale * turn.cosine, 0.0, 0.0},
                            {0.0, 0.0, 1.0 / radius, 0.0},
                            {0.0, 0.0, 0.0, scale / radius}};
  PoseCovariance in_scene = {};
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j) {
      for (std::size_t k = 0; k < 4; ++k) {
        for (std::size_t l = 0; l < 4; ++l)
          in_scene[4 * i + j] += map[i][k] * covariance.at[k][l] * map[j][l];
      }
    }
  }
  return in_scene;
}

double CornerDeviation(const FitCovariance& covariance, double scale) {
  double sum = 0.0;
  for (int i = 0; i < kNumPoseColumns; ++i)
    sum += covariance.at[i][i];
  return scale * std::sqrt(sum);
}

}  // namespace orvandel::shape
