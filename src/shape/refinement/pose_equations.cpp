#include "shape/refinement/pose_equations.h"

namespace orvandel::shape {
namespace {

/// The derivatives are of the pattern's grey; seen in the scene they are multiplied by its gain.
double FactorOf(Column column, const StretchLight& light) {
  return column < kPattern ? light.derivative_gain : 1.0;
}

/// Sum of products of a column with the pattern's grey about its mean.
double AboutMean(const StretchSums& sums, Column column) {
  return sums.at[kPattern][column] - sums.PatternMean() * sums.at[kOne][column];
}

/// 1 / (sum + precision), 0 for infinite precision or nothing to divide by.
double Shrunk(double sum, double precision) {
  const double total = sum + precision;
  return total > 0.0 ? 1.0 / total : 0.0;
}

struct Equations {
  SymmetricMatrix matrix;
  double right[kNumColumns] = {};
  double scale[kNumColumns] = {};
};

/// Adds a stretch's products with its own gain and bias eliminated.
void AddStretch(const StretchSums& sums, const FittedColumns& fitted, const LightPrior& prior,
                const StretchLight& light, Equations& equations) {
  Projection projections[kNumColumns];
  double ones[kNumColumns];
  double patterns[kNumColumns];
  for (int i = 0; i < fitted.count; ++i) {
    projections[i] = Project(sums, PriorOf(light, prior), fitted.columns[i]);
    ones[i] = sums.at[kOne][fitted.columns[i]];
    patterns[i] = AboutMean(sums, fitted.columns[i]);
  }
  const double scene_one = sums.at[kOne][kScene];
  const double scene_pattern = AboutMean(sums, kScene);
  for (int i = 0; i < fitted.count; ++i) {
    const Column a = fitted.columns[i];
    const double factor = light.trust * FactorOf(a, light);
    for (int j = i; j < fitted.count; ++j) {
      const Column b = fitted.columns[j];
      const double product =
          sums.at[a][b] - projections[i].one * ones[j] - projections[i].pattern * patterns[j];
      equations.matrix.at[i][j] += factor * FactorOf(b, light) * product;
    }
    equations.right[i] += factor * (sums.at[a][kScene] - projections[i].one * scene_one -
                                    projections[i].pattern * scene_pattern);
    equations.scale[i] += factor * FactorOf(a, light) * sums.at[a][a];
  }
}

/// Fits a stretch's own gain and bias to what the common unknowns leave.
void FitLight(const StretchSums& sums, const PoseSolution& solution, const LightPrior& prior,
              StretchLight& light) {
  const LightPrior own = PriorOf(light, prior);
  double one = sums.at[kOne][kScene];
  double pattern = AboutMean(sums, kScene);
  for (int i = 0; i < solution.fitted.count; ++i) {
    const Column column = solution.fitted.columns[i];
    const double size = FactorOf(column, light) * solution.unknowns[i];
    one -= size * sums.at[kOne][column];
    pattern -= size * AboutMean(sums, column);
  }
  const double own_gain = pattern * Shrunk(sums.PatternSpread(), own.gain_precision);
  const double own_bias = one * Shrunk(sums.Weight(), own.bias_precision);
  light.gain = solution.by_column[kPattern] + own_gain;
  light.bias = solution.by_column[kOne] + own_bias - own_gain * sums.PatternMean();
}

}  // namespace

double LeftOver(const StretchSums& sums, const PoseSolution& solution, const StretchLight& light) {
  double factors[kNumColumns] = {};
  for (int i = 0; i < kPattern; ++i)
    factors[i] = -solution.by_column[i] * light.derivative_gain;
  factors[kPattern] = -light.gain;
  factors[kOne] = -light.bias;
  factors[kScene] = 1.0;
  double square = 0.0;
  for (int i = 0; i < kNumColumns; ++i) {
    for (int j = 0; j < kNumColumns; ++j)
      square += factors[i] * factors[j] * sums.at[i][j];
  }
  return square;
}

LightPrior PriorOf(const StretchLight& light, const LightPrior& prior) {
  return light.is_free ? LightPrior{0.0, 0.0} : prior;
}

Projection Project(const StretchSums& sums, const LightPrior& prior, Column column) {
  return {AboutMean(sums, column) * Shrunk(sums.PatternSpread(), prior.gain_precision),
          sums.at[kOne][column] * Shrunk(sums.Weight(), prior.bias_precision)};
}

PoseSolution SolvePose(std::span<const StretchSums> sums, const FittedColumns& fitted,
                       const LightPrior& prior, std::span<const StretchLight> lights) {
  Equations equations;
  for (std::size_t t = 0; t < sums.size(); ++t) {
    if (lights[t].trust > 0.0) AddStretch(sums[t], fitted, prior, lights[t], equations);
  }
  for (int i = 0; i < fitted.count; ++i) {
    for (int j = 0; j < i; ++j)
      equations.matrix.at[i][j] = equations.matrix.at[j][i];
  }
  PoseSolution solution;
  solution.fitted = fitted;
  solution.inverse = equations.matrix;
  InvertBySweeping(solution.inverse, fitted.count, equations.scale);
  for (int i = 0; i < fitted.count; ++i) {
    for (int j = 0; j < fitted.count; ++j)
      solution.unknowns[i] += solution.inverse.at[i][j] * equations.right[j];
    solution.by_column[fitted.columns[i]] = solution.unknowns[i];
  }
  return solution;
}

void FitLights(std::span<const StretchSums> sums, const PoseSolution& solution,
               const LightPrior& prior, std::span<StretchLight> lights) {
  for (std::size_t t = 0; t < sums.size(); ++t) {
    if (lights[t].trust > 0.0) FitLight(sums[t], solution, prior, lights[t]);
  }
}

}  // namespace orvandel::shape
