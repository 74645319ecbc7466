#include "contours/edge_strength.h"

#include <cstdlib>

namespace orvandel {
namespace {

/// Five rows of an image round the one whose gradient is wanted.
class Neighbourhood {
 public:
  Neighbourhood(const GreyRows& image, int y) : rows_(image.rows + y - 2) {}

  int HorizontalSum(int x) const {
    // The first column of a row takes pairs further apart than all others do; it counts in the
    // histogram like the rest, so the estimate depends on it.
    if (x == 2) return PairWeight(3) - PairWeight(0);
    return PairWeight(x + 1) - PairWeight(x - 1);
  }

  int VerticalSum(int x) const {
    return UpMinusDown(x - 1) + 2 * UpMinusDown(x) + UpMinusDown(x + 1);
  }

 private:
  int ColumnWeight(int c) const { return rows_[1][c] + 2 * rows_[2][c] + rows_[3][c]; }
  int PairWeight(int c) const { return ColumnWeight(c) + ColumnWeight(c + 1); }
  int UpMinusDown(int c) const { return rows_[0][c] + rows_[1][c] - rows_[3][c] - rows_[4][c]; }

  const std::uint8_t* const* rows_;
};

}  // namespace

void ComputeMagnitudes(const GreyRows& image, const GradientTables& tables,
                       const GreyRows& magnitudes) {
  for (int y = 2; y <= image.height - 3; ++y) {
    const Neighbourhood around(image, y);
    for (int x = 2; x <= image.width - 3; ++x) {
      // Arithmetic shifts: eighths are rounded toward minus infinity.
      magnitudes.rows[y][x] = static_cast<std::uint8_t>(
          tables.SignedMagnitude(around.HorizontalSum(x) >> 3, around.VerticalSum(x) >> 3));
    }
  }
}

int ProposeEdgeThreshold(const MagnitudeHistogram& counts) {
  // Magnitude 0 is background and never looked at. Of equal counts the lowest bin wins.
  std::size_t least = 1;
  std::size_t most = 1;
  for (std::size_t bin = 2; bin < counts.size(); ++bin) {
    if (counts[bin] < counts[least]) least = bin;
    if (counts[bin] > counts[most]) most = bin;
  }
  const int distance = std::abs(static_cast<int>(least) - static_cast<int>(most));
  // The peak is subtracted, not added: the estimate that hosts know is made so.
  const int proposal = static_cast<int>(0.2 * distance) - static_cast<int>(most);
  return proposal < 1 || proposal > 255 ? kNoProposal : proposal;
}

}  // namespace orvandel
