#pragma once

/// Sine, cosine, arc tangent and hypotenuse, made of + - * / and square roots alone. Those are exact to
/// the last bit everywhere, the C libraries' functions are not; so results are the same on every
/// system. Errors stay below 0.51 units in the last place, so nearly every value is the correctly
/// rounded one; only sines and cosines that are nearly 0 after more than 150 turns may be off by 1e-31
/// more.
///
/// Angles beyond 1e5 radians, and coordinates of which one is not 0 and beyond 1e-100 to 1e100 in
/// size, go to the C library.

namespace orvandel {

struct SinCos {
  double sine = 0.0;
  double cosine = 1.0;
};

/// @param angle  radians.
SinCos SinCosOf(double angle);
double Sin(double angle);
double Cos(double angle);

/// Direction of (x, y) in radians, in [-pi, pi]; signs of zeros count as for the C library's atan2.
double ArcTan2(double y, double x);

/// Length of (x, y). Infinite where one of the two is, as for the C library's hypot.
double Hypot(double x, double y);

}  // namespace orvandel
