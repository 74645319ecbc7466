#pragma once

#include <vector>

namespace orvandel::evaluation {

/// The value below which `percent` of the values lie, interpolated between the two nearest ranks:
/// 0 is the smallest, 50 the median, 100 the largest. Not a number when there are no values.
double Percentile(std::vector<double> values, double percent);

/// The middle value, or half way between the two middle ones.
double Median(std::vector<double> values);

}  // namespace orvandel::evaluation
