#pragma once

#include <vector>

namespace orvandel::shape {

struct WeightedValue {
  double value;
  double weight;
};

/// The value below which half of the weight lies; 0 for an empty list. Sorts the list.
double WeightedMedian(std::vector<WeightedValue>& values);

}  // namespace orvandel::shape
