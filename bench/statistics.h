#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvandel::bench {

/// The smallest value that at least `share` of all values do not exceed; 0 without values.
inline double Quantile(std::vector<double> values, double share) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const double rank = std::ceil(share * static_cast<double>(values.size()));
  const auto index = static_cast<std::size_t>(std::max(rank - 1, 0.0));
  return values[std::min(index, values.size() - 1)];
}

/// The middle value, or half way between the two middle ones; 0 without values.
inline double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace orvandel::bench
