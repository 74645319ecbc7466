#pragma once

#include <array>
#include <cmath>
#include <cstdlib>

#include "tests/reference/sub_canny.h"
#include "tests/support/grids.h"

// The proposal of an edge threshold once more, written to be read. The library has to give the same
// number.
namespace orvandel::test {

/// Rounds toward minus infinity, as shifting right by three bits does.
inline int FloorOfEighth(int value) {
  return static_cast<int>(std::floor(value / 8.0));
}

/// Gradient magnitude of every pixel but those of the two outermost rows and columns, which are 0.
inline Grid ReferenceMagnitudes(const Grid& s) {
  const auto w = [&](int c, int y) { return At(s, c, y - 1) + 2 * At(s, c, y) + At(s, c, y + 1); };
  const auto v = [&](int c, int y) {
    return At(s, c, y - 2) + At(s, c, y - 1) - At(s, c, y + 1) - At(s, c, y + 2);
  };
  Grid magnitudes = MakeGrid(Width(s), Height(s));
  for (int y = 2; y <= Height(s) - 3; ++y) {
    for (int x = 2; x <= Width(s) - 3; ++x) {
      // The first column leaves itself out; all others count themselves to the left.
      const int left = x == 2 ? w(0, y) + w(1, y) : w(x - 1, y) + w(x, y);
      const int gx = w(x + 1, y) + w(x + 2, y) - left;
      const int gy = v(x - 1, y) + 2 * v(x, y) + v(x + 1, y);
      At(magnitudes, x, y) =
          ReferenceMagnitude(std::abs(FloorOfEighth(gx)), std::abs(FloorOfEighth(gy)));
    }
  }
  return magnitudes;
}

struct ReferencePeaks {
  int least = 1;  // the first of the least populated bins
  int most = 1;   // the first of the most populated bins
};

inline ReferencePeaks ReferenceFindPeaks(const Grid& magnitudes) {
  std::array<int, 256> bins{};
  for (const std::vector<int>& row : magnitudes) {
    for (const int magnitude : row)
      ++bins[static_cast<std::size_t>(magnitude)];
  }
  ReferencePeaks peaks;
  for (int bin = 2; bin <= 255; ++bin) {
    const auto count = [&](int b) { return bins[static_cast<std::size_t>(b)]; };
    if (count(bin) < count(peaks.least)) peaks.least = bin;
    if (count(bin) > count(peaks.most)) peaks.most = bin;
  }
  return peaks;
}

inline int ReferenceProposal(const ReferencePeaks& peaks) {
  const int proposal = static_cast<int>(0.2 * std::abs(peaks.least - peaks.most)) - peaks.most;
  return proposal < 1 || proposal > 255 ? 10 : proposal;
}

inline int ReferenceEdgeStrength(const Grid& image) {
  return ReferenceProposal(ReferenceFindPeaks(ReferenceMagnitudes(image)));
}

}  // namespace orvandel::test
