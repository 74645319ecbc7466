#pragma once

#include <cstddef>
#include <vector>

// The five-point mean once more, written to be read. The library has to give the same bits.
namespace orvandel::test {

/// The smoothed coordinates of one contour, along one axis.
inline std::vector<double> ReferenceSmoothed(const std::vector<double>& p) {
  const std::size_t n = p.size();
  if (n <= 5) return p;
  std::vector<double> out(n);
  out[0] = (p[0] + p[1] + p[2]) / 3;
  out[1] = (p[0] + p[1] + p[2]) * 0.25 + p[3] * 0.25;
  double sum = p[0] + p[1] + p[2] + p[3] + p[4];
  out[2] = sum / 5;
  for (std::size_t i = 3; i <= n - 3; ++i) {
    // A running sum rounds otherwise than five fresh additions would.
    sum = (sum - p[i - 3]) + p[i + 2];
    out[i] = sum / 5;
  }
  out[n - 2] = (p[n - 4] + p[n - 3] + p[n - 2]) * 0.25 + p[n - 1] * 0.25;
  out[n - 1] = (p[n - 3] + p[n - 2] + p[n - 1]) / 3;
  return out;
}

}  // namespace orvandel::test
