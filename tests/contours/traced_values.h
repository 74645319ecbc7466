#pragma once

#include <span>
#include <vector>

namespace orvandel::test {

inline std::vector<double> ValuesOf(std::span<const double> values) {
  return {values.begin(), values.end()};
}

}  // namespace orvandel::test
