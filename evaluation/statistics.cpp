#include "evaluation/statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orvandel::evaluation {

double Percentile(std::vector<double> values, double percent) {
  if (values.empty()) return std::numeric_limits<double>::quiet_NaN();
  std::sort(values.begin(), values.end());
  const double rank = percent / 100.0 * static_cast<double>(values.size() - 1);
  const auto below = static_cast<std::size_t>(rank);
  const std::size_t above = std::min(below + 1, values.size() - 1);
  return values[below] + (rank - static_cast<double>(below)) * (values[above] - values[below]);
}

double Median(std::vector<double> values) {
  return Percentile(std::move(values), 50);
}

}  // namespace orvandel::evaluation
