#include "contours/extents.h"

namespace orvandel {
namespace {

// Where the search for an extreme starts, and what an empty set answers.
constexpr double kBelowAll = -999999999.0;
constexpr double kAboveAll = 999999999.0;

double MeanOf(std::span<const double> values) {
  double sum = 0.0;
  for (const double value : values)
    sum += value;
  return sum / static_cast<double>(values.size());
}

}  // namespace

Point Centroid(const ContourSetView& contours) {
  return {MeanOf(contours.x), MeanOf(contours.y)};
}

Extreme LargestOf(std::span<const double> values) {
  Extreme largest = {kBelowAll, std::nullopt};
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] > largest.value) largest = {values[i], i};
  }
  return largest;
}

Extreme SmallestOf(std::span<const double> values) {
  Extreme smallest = {kAboveAll, std::nullopt};
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] < smallest.value) smallest = {values[i], i};
  }
  return smallest;
}

}  // namespace orvandel
