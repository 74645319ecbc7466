#pragma once

#include <vector>

namespace orvandel::shape {

/// The scales that the exhaustive search looks for on a level of the pyramid.
struct Grid {
  int level = 0;
  double min_scale = 1.0;
  double max_scale = 1.0;

  /// The finer level whose gradients fill the response maps, where there is one.
  int GradientLevel() const { return level > 0 ? level - 1 : 0; }
};

/// Splits a range of scales so that a pattern of this side (root of its area) is small enough on its grid for trying
/// everything, and large enough to be told apart. Coarsest grid first.
void ChooseGrids(double side, double min_scale, double max_scale, std::vector<Grid>& grids);

}  // namespace orvandel::shape
