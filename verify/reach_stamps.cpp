#include "verify/reach_stamps.h"

#include <algorithm>
#include <cmath>

namespace orvandel {
namespace {

/// A set of whole-pixel steps from a probe's start to a probed pixel.
class StepSet {
 public:
  static constexpr int kReach = kLargestRadius + 1;

  void Add(int row, int column) { members_[Index(row, column)] = true; }
  bool Has(int row, int column) const { return members_[Index(row, column)]; }

 private:
  static constexpr int kSize = 2 * kReach + 1;
  static std::size_t Index(int row, int column) {
    return static_cast<std::size_t>((row + kReach) * kSize + column + kReach);
  }
  std::array<bool, std::size_t{kSize} * kSize> members_{};
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
void AddSteps(DirectionRange range, int radius, StepSet& steps) {
  const FlankOffset flank = kFlankOffsets[0];  // the search's
  for (int k = 1; k <= radius; ++k) {
    const StepRange rows = StepsBetween(std::sin(range.first), std::sin(range.last), k);
    const StepRange columns = StepsBetween(std::cos(range.first), std::cos(range.last), k);
    for (int dr = rows.first; dr <= rows.last; ++dr) {
      for (int dc = columns.first; dc <= columns.last; ++dc) {
        steps.Add(dr, -dc);
        steps.Add(-dr, dc);
        steps.Add(dr + flank.row, -dc + flank.column);
        steps.Add(-dr - flank.row, dc - flank.column);
      }
    }
  }
}

/// All pixels that are probed for the expected directions of a bin.
StepSet StepsOfBin(int expected_bin, int radius) {
  constexpr int kPieces = 4;  // of a 32nd of a turn: the axes lie at their ends
  constexpr double kMargin = 1e-6;
  StepSet steps;
  steps.Add(0, 0);
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

ReachStamps::ReachStamps(const ProbeRules& rules)
    : reach_((rules.radius + 2) / 2),
      row_size_(2 * reach_ + 1 <= 8 ? 8 : 16),
      stamp_size_(row_size_ * static_cast<std::size_t>(2 * reach_ + 1)),
      sets_(stamp_size_ * 4 * kNumStoredBins) {
  const int furthest = rules.radius + 1;
  for (int expected = 0; expected < kNumExpectedBins; ++expected) {
    const StepSet steps = StepsOfBin(expected, rules.radius);
    for (int stored = 0; stored < kNumStoredBins; ++stored) {
      if (!MayMatch(expected, stored, rules)) continue;
      for (int phase = 0; phase < 4; ++phase) {
        const int phase_x = phase % 2;
        const int phase_y = phase / 2;
        DirectionSet* stamp =
            sets_.data() + static_cast<std::size_t>(stored * 4 + phase) * stamp_size_;
        for (int row = -furthest; row <= furthest; ++row) {
          for (int column = -furthest; column <= furthest; ++column) {
            if (!steps.Has(row, column)) continue;
            // The probe that ends in the edge pixel starts a step before it.
            const int square_row = FloorHalf(phase_y - row) + reach_;
            const int square_column = FloorHalf(phase_x - column) + reach_;
            DirectionSet& set = stamp[static_cast<std::size_t>(square_row) * row_size_ +
                                      static_cast<std::size_t>(square_column)];
            set |= DirectionSet{1} << expected;
          }
        }
      }
    }
  }
}

std::shared_ptr<const ReachStamps> StampsFor(const ProbeRules& rules) {
  static const ProbeRules usual{CPattVerify()};
  if (rules != usual) return std::make_shared<const ReachStamps>(rules);
  static const auto stamps = std::make_shared<const ReachStamps>(usual);
  return stamps;
}

}  // namespace orvandel
