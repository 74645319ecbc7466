#pragma once

namespace orvandel {

// The functions are static because files that are compiled for other instructions use them: with external
// linkage the linker might keep the copy that a plain processor cannot run.

/// An unevaluated sum of two doubles, some 106 bits in all; |low| is at most half an ulp of high.
struct DoubleDouble {
  double high = 0.0;
  double low = 0.0;
};

/// The sum and its rounding error, exactly. Needs |a| >= |b|, or a = 0.
/// (T. J. Dekker, "A floating-point technique for extending the available precision", 1971.)
static constexpr DoubleDouble FastTwoSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

/// The sum and its rounding error, exactly. (D. E. Knuth, "The Art of Computer Programming", 4.2.2.)
static constexpr DoubleDouble TwoSum(double a, double b) {
  const double sum = a + b;
  const double b_part = sum - a;
  return {sum, (a - (sum - b_part)) + (b - b_part)};
}

/// Two halves of at most 26 bits whose sum is the value, so that products of halves are exact.
/// Needs |value| < 2^996. (Veltkamp's split, in Dekker's paper.)
static constexpr DoubleDouble Split(double value) {
  const double scaled = value * 134217729.0;  // 2^27 + 1
  const double high = scaled - (scaled - value);
  return {high, value - high};
}

/// The product and its rounding error, exactly while nothing overflows or falls below the normal
/// range. (Dekker's product.)
static constexpr DoubleDouble TwoProduct(double a, double b) {
  const DoubleDouble x = Split(a);
  const DoubleDouble y = Split(b);
  const double product = a * b;
  const double error =
      ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low;
  return {product, error};
}

static constexpr DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble high = TwoSum(a.high, b.high);
  const DoubleDouble low = TwoSum(a.low, b.low);
  const DoubleDouble sum = FastTwoSum(high.high, high.low + low.high);
  return FastTwoSum(sum.high, sum.low + low.low);
}

static constexpr DoubleDouble operator-(DoubleDouble a) {
  return {-a.high, -a.low};
}

static constexpr DoubleDouble operator-(DoubleDouble a, DoubleDouble b) {
  return a + -b;
}

static constexpr DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble product = TwoProduct(a.high, b.high);
  return FastTwoSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

static constexpr DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
  const double first = a.high / b.high;
  const DoubleDouble rest = a - b * DoubleDouble{first, 0.0};
  const double second = rest.high / b.high;
  const DoubleDouble rest_of_rest = rest - b * DoubleDouble{second, 0.0};
  const DoubleDouble quotient = FastTwoSum(first, second);
  return FastTwoSum(quotient.high, quotient.low + rest_of_rest.high / b.high);
}

}  // namespace orvandel
