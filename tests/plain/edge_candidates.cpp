#include "tests/plain/edge_candidates.h"

#include <array>
#include <cstddef>
#include <cstdlib>

namespace orvandel::plain {
namespace {

using RowSums = std::vector<std::uint16_t>;
using SmoothRow = std::vector<std::uint8_t>;

/// Sums of three neighbours along a row; the border pixel stands in for the one beyond it.
void SumRow(const std::uint8_t* row, RowSums& sums) {
  const std::size_t last = sums.size() - 1;
  sums[0] = static_cast<std::uint16_t>(2 * row[0] + row[1]);
  for (std::size_t x = 1; x < last; ++x) {
    sums[x] = static_cast<std::uint16_t>(row[x - 1] + row[x] + row[x + 1]);
  }
  sums[last] = static_cast<std::uint16_t>(2 * row[last] + row[last - 1]);
}

void MeanOfThree(const RowSums& above, const RowSums& centre, const RowSums& below,
                 SmoothRow& smooth) {
  for (std::size_t x = 0; x < smooth.size(); ++x) {
    smooth[x] = static_cast<std::uint8_t>((above[x] + centre[x] + below[x]) / 9);
  }
}

/// The box-smoothed rows of an image, made one after another; only the last few are kept. A
/// gradient reads the rows above and below its own, so a ring of four holds all that is alive.
class SmoothedRows {
 public:
  explicit SmoothedRows(const tImage& image) : image_(image) {
    const auto width = static_cast<std::size_t>(image.width);
    sums_.fill(RowSums(width));
    smooth_.fill(SmoothRow(width));
    SumRow(image.row[0], sums_[0]);
    SumRow(image.row[1], sums_[1]);
  }

  /// Makes smoothed row y; called for y = 1, 2, ... height - 2 in turn.
  void Advance(int y) {
    SumRow(image_.row[y + 1], Sums(y + 1));
    MeanOfThree(Sums(y - 1), Sums(y), Sums(y + 1), smooth_[Slot(y)]);
  }

  const SmoothRow& At(int y) const { return smooth_[Slot(y)]; }

 private:
  static std::size_t Slot(int y) { return static_cast<std::size_t>(y) % 4; }
  RowSums& Sums(int y) { return sums_[Slot(y)]; }

  const tImage& image_;
  std::array<RowSums, 4> sums_;
  std::array<SmoothRow, 4> smooth_;
};

struct Gradient {
  int vertical;    // positive where it gets darker downwards
  int horizontal;  // positive where it gets brighter to the right
};

Gradient DiagonalGradient(const SmoothRow& above, const SmoothRow& below, std::size_t x) {
  return {(above[x - 1] + above[x + 1] - below[x - 1] - below[x + 1]) / 2,
          (above[x + 1] + below[x + 1] - above[x - 1] - below[x - 1]) / 2};
}

std::uint8_t MagnitudeOf(const Gradient& gradient, const GradientTables& tables) {
  return tables.magnitude[static_cast<std::size_t>(std::abs(gradient.vertical) * 256 +
                                                   std::abs(gradient.horizontal))];
}

std::uint8_t DirectionOf(const Gradient& gradient, const GradientTables& tables) {
  return tables.direction[static_cast<std::size_t>((gradient.vertical / 2 + 127) * 256 +
                                                   (gradient.horizontal / 2 + 127))];
}

}  // namespace

std::vector<EdgeCandidate> FindEdgeCandidates(const tImage& image, int threshold,
                                              const GradientTables& tables, tImage& magnitude) {
  std::vector<EdgeCandidate> candidates;
  if (image.width < 5 || image.height < 5) return candidates;

  SmoothedRows smoothed(image);
  smoothed.Advance(1);
  smoothed.Advance(2);
  for (int y = 2; y <= image.height - 3; ++y) {
    smoothed.Advance(y + 1);
    const SmoothRow& above = smoothed.At(y - 1);
    const SmoothRow& below = smoothed.At(y + 1);
    for (int x = 2; x <= image.width - 3; ++x) {
      const Gradient gradient = DiagonalGradient(above, below, static_cast<std::size_t>(x));
      const std::uint8_t m = MagnitudeOf(gradient, tables);
      if (m < threshold) continue;

      magnitude.row[y][x] = m;
      const std::uint8_t direction = DirectionOf(gradient, tables);
      // Sector boundaries lie half a sector off the axes; codes 240..255 wrap into sector 0.
      const auto sector = static_cast<std::uint8_t>(((direction + 16) >> 5) & 3);
      candidates.push_back(
          {static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(y), direction, sector});
    }
  }
  return candidates;
}

}  // namespace orvandel::plain
