#include "shape/search/grids.h"

#include <algorithm>
#include <cmath>

namespace orvandel::shape {
namespace {

/// Wanted side of the pattern, grid positions. A fixed scale leaves time for more.
constexpr double kSideOpenScale = 16.0;
constexpr double kSideFixedScale = 28.0;

/// A range of scales below this ratio is as good as fixed; and so small a rest of a range, at its lower end, goes to the
/// coarser grid.
constexpr double kNarrowRange = 1.3;

/// No pyramid is deeper.
constexpr int kDeepest = 14;

}  // namespace

void ChooseGrids(double side, double min_scale, double max_scale, std::vector<Grid>& grids) {
  grids.clear();
  const double wanted = max_scale < kNarrowRange * min_scale ? kSideFixedScale : kSideOpenScale;
  const double largest = wanted * std::sqrt(2.0);
  double upper = max_scale;
  int level = 0;
  while (level < kDeepest && side * upper / static_cast<double>(1 << level) >= largest)
    ++level;
  for (; level >= 0; --level) {
    // Below this scale the next finer grid would show the pattern at the wanted side or below.
    const double lower = level == 0 ? 0.0 : largest * static_cast<double>(1 << (level - 1)) / side;
    if (lower <= min_scale * kNarrowRange) {
      grids.push_back({level, min_scale, upper});
      return;
    }
    grids.push_back({level, lower, upper});
    upper = lower;
  }
}

}  // namespace orvandel::shape
