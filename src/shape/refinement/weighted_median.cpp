#include "shape/refinement/weighted_median.h"

#include <algorithm>

namespace orvandel::shape {

double WeightedMedian(std::vector<WeightedValue>& values) {
  if (values.empty()) return 0.0;
  std::sort(values.begin(), values.end(), [](const WeightedValue& a, const WeightedValue& b) {
    return a.value < b.value || (a.value == b.value && a.weight < b.weight);
  });
  double total = 0.0;
  for (const WeightedValue& value : values)
    total += value.weight;
  double below = 0.0;
  for (const WeightedValue& value : values) {
    below += value.weight;
    if (below >= 0.5 * total) return value.value;
  }
  return values.back().value;
}

}  // namespace orvandel::shape
