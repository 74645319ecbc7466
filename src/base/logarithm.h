#pragma once

namespace orvandel {

/// The natural logarithm of a positive finite number, to about 1e-14 of its size or, near 1, 1e-16; made of + - * /
/// alone, so that it is the same on every system. 0 and below give -745, the logarithm of the smallest number.
double NaturalLogarithm(double value);

/// e to the power of `exponent`, to about 1e-14 of its size; exponents beyond -700 .. 700 count as those. Made of
/// + - * / alone.
double ExponentialOf(double exponent);

}  // namespace orvandel
