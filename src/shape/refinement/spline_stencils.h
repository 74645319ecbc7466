#pragma once

#include "shape/refinement/float_image.h"
#include "shape/refinement/refinement_model.h"

namespace orvandel::shape {

// An image sampled with the cubic B-spline as kernel is a smooth function with exact derivatives. At the
// pixels themselves they are sums over 3 x 3 neighbours: (1 4 1)/6 for the value, (-1 0 1)/2 for the first
// and (1 -2 1) for the second derivative along an axis.
// Source: M. Unser, "Splines: a perfect fit for signal and image processing", IEEE Signal Processing
// Magazine 16(6), 1999.

/// Variance that the B-spline kernel adds along each axis, pixels squared.
inline constexpr double kSplineVariance = 1.0 / 3.0;
/// Variance of a pixel's own area.
inline constexpr double kPixelVariance = 1.0 / 12.0;

/// The gradient at all pixels; 0 in the outermost ones.
void SplineGradient(const FloatImage& image, FloatImage& dx, FloatImage& dy);

/// Value and derivatives at a strip's pixels, which keep off the image's border.
void SplineValues(const FloatImage& image, const Strip& strip, BlurLevel& level);

}  // namespace orvandel::shape
