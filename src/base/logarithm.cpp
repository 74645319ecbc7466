#include "base/logarithm.h"

#include <algorithm>
#include <cmath>

namespace orvandel {
namespace {

constexpr double kLogOf2 = 0.693147180559945309417;
constexpr double kSqrtOf2 = 1.41421356237309504880;

}  // namespace

double NaturalLogarithm(double value) {
  if (!(value > 0.0)) return -745.0;
  int exponent = 0;
  double mantissa = std::frexp(value, &exponent);  // exact, in [0.5, 1)
  mantissa *= kSqrtOf2;                            // in [0.707, 1.414)
  // ln m = 2 atanh((m - 1) / (m + 1)); the argument is at most 0.172, and 10 terms reach 1e-17.
  const double z = (mantissa - 1.0) / (mantissa + 1.0);
  const double square = z * z;
  double sum = 0.0;
  for (int k = 21; k >= 1; k -= 2)
    sum = sum * square + 1.0 / k;
  return 2.0 * z * sum + (static_cast<double>(exponent) - 0.5) * kLogOf2;
}

double ExponentialOf(double exponent) {
  const double limited = std::clamp(exponent, -700.0, 700.0);
  const double turns = std::floor(limited / kLogOf2 + 0.5);
  const double rest = limited - turns * kLogOf2;  // at most 0.347 in size
  double sum = 1.0;
  for (int k = 16; k >= 1; --k)
    sum = 1.0 + rest / k * sum;
  return std::ldexp(sum, static_cast<int>(turns));
}

}  // namespace orvandel
