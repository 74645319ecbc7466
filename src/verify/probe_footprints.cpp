#include "verify/probe_footprints.h"

#include <algorithm>
#include <set>

#include "base/trigonometry.h"
#include "verify/probed_neighbour.h"

namespace orvandel {
namespace {

/// A whole-pixel step from a probe's start to a probed pixel.
struct Step {
  int row;
  int column;

  friend bool operator<(const Step& a, const Step& b) {
    return a.row != b.row ? a.row < b.row : a.column < b.column;
  }
};

/// Whole steps at a distance whose components lie anywhere in a range.
struct StepRange {
  int first;
  int last;
};
StepRange StepsBetween(double a, double b, int distance) {
  constexpr double kMargin = 1e-9;
  const auto [low, high] = std::minmax(a, b);
  return {static_cast<int>(distance * (low - kMargin) + 0.5),
          static_cast<int>(distance * (high + kMargin) + 0.5)};
}

/// The pixels that are probed for an expected direction between two that are so close that sine and cosine
/// run one way between them.
void AddSteps(DirectionRange range, int radius, std::set<Step>& steps) {
  constexpr NeighbourOffset neighbour = kNeighbourInSearch;
  for (int k = 1; k <= radius; ++k) {
    const StepRange rows = StepsBetween(Sin(range.first), Sin(range.last), k);
    const StepRange columns = StepsBetween(Cos(range.first), Cos(range.last), k);
    for (int dr = rows.first; dr <= rows.last; ++dr) {
      for (int dc = columns.first; dc <= columns.last; ++dc) {
        steps.insert({dr, -dc});
        steps.insert({-dr, dc});
        steps.insert({dr + neighbour.row, -dc + neighbour.column});
        steps.insert({-dr - neighbour.row, dc - neighbour.column});
      }
    }
  }
}

/// All pixels that are probed for the expected directions of a bin.
std::set<Step> StepsOfBin(int expected_bin, int radius) {
  constexpr int kPieces = 4;  // of a 32nd of a turn: the axes lie at their ends
  constexpr double kMargin = 1e-6;
  std::set<Step> steps = {{0, 0}};
  const DirectionRange bin = RangeOfExpectedBin(expected_bin);
  const double width = (bin.last - bin.first) / kPieces;
  for (int i = 0; i < kPieces; ++i) {
    AddSteps({bin.first + i * width - kMargin, bin.first + (i + 1) * width + kMargin}, radius,
             steps);
  }
  return steps;
}

int FloorHalf(int n) {
  return n >= 0 ? n / 2 : -((1 - n) / 2);
}

}  // namespace

ProbeFootprints::ProbeFootprints(const MatchOptions& options)
    : reach_((options.radius + 2) / 2),
      row_size_(2 * reach_ + 1 <= 8 ? 8 : 16),
      footprint_size_(row_size_ * static_cast<std::size_t>(2 * reach_ + 1)),
      starts_(footprint_size_ * 4) {
  for (int expected = 0; expected < kNumExpectedBins; ++expected) {
    const OrientationMask only = OrientationMask{1} << expected;
    for (const Step step : StepsOfBin(expected, options.radius))
      AddStart(step.row, step.column, only);
    for (int stored = 0; stored < kNumStoredBins; ++stored) {
      if (MayMatch(expected, stored, options)) matched_[static_cast<std::size_t>(stored)] |= only;
    }
  }
}

/// Notes in the four footprints from which square a probe comes to the edge pixel by a step.
void ProbeFootprints::AddStart(int step_row, int step_column, OrientationMask expected) {
  for (const int phase_y : {0, 1}) {
    for (const int phase_x : {0, 1}) {
      const int row = FloorHalf(phase_y - step_row) + reach_;
      const int column = FloorHalf(phase_x - step_column) + reach_;
      const std::size_t place =
          static_cast<std::size_t>(row) * row_size_ + static_cast<std::size_t>(column);
      starts_[IndexOf(phase_x, phase_y) + place] |= expected;
    }
  }
}

std::shared_ptr<const ProbeFootprints> FootprintsFor(const MatchOptions& options) {
  constexpr MatchOptions kUsual;
  if (options != kUsual) return std::make_shared<const ProbeFootprints>(options);
  static const auto footprints = std::make_shared<const ProbeFootprints>(kUsual);
  return footprints;
}

}  // namespace orvandel
