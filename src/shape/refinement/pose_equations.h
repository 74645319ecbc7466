#pragma once

#include <span>

#include "base/sweep.h"
#include "shape/refinement/stretch_sums.h"

namespace orvandel::shape {

/// How far a stretch's gain and bias may lie from the common ones: precisions of their priors, in the
/// weights' units. Infinite: not at all. 0: anywhere.
struct LightPrior {
  double gain_precision = 0.0;
  double bias_precision = 0.0;  ///< of the grey at the stretch's mean pattern grey
};

/// Which columns are fitted with one unknown for all stretches. kPattern and kOne, the common gain and
/// bias, always are.
struct FittedColumns {
  int count = 0;
  Column columns[kNumColumns] = {};

  void Add(Column column) { columns[count++] = column; }
};

/// The least-squares solution over all stretches.
struct PoseSolution {
  FittedColumns fitted;
  SymmetricMatrix inverse;  ///< of the normal matrix; rows of unknowns not determined are 0
  double unknowns[kNumColumns] = {};  ///< in the order of `fitted`
  /// By column; 0 where it was not fitted. The derivatives' are those of the pattern itself: they are
  /// multiplied by a stretch's gain.
  double by_column[kNumColumns] = {};
};

/// Solves for the unknowns of all stretches, the stretches' own gains and biases eliminated.
///
/// @param lights  with derivative gain and trust, 0 where a stretch has no weight.
PoseSolution SolvePose(std::span<const StretchSums> sums, const FittedColumns& fitted,
                       const LightPrior& prior, std::span<const StretchLight> lights);

/// Fills in the gain and bias of each stretch that is trusted.
void FitLights(std::span<const StretchSums> sums, const PoseSolution& solution,
               const LightPrior& prior, std::span<StretchLight> lights);

/// Weighted sum of squares of what the solution and a stretch's light leave of the scene.
double LeftOver(const StretchSums& sums, const PoseSolution& solution, const StretchLight& light);

/// What the elimination of a stretch's own gain and bias takes from column j: `pattern` times the
/// pattern's grey about its mean, and `one`.
struct Projection {
  double pattern = 0.0;
  double one = 0.0;
};
Projection Project(const StretchSums& sums, const LightPrior& prior, Column column);

/// The prior of one stretch.
LightPrior PriorOf(const StretchLight& light, const LightPrior& prior);

}  // namespace orvandel::shape
