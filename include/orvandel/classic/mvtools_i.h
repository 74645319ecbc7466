#pragma once

#include <cstdint>

#include "orvandel/classic/imgutil_i.h"

// The vision tools that Orvandel imports. `libmvtools_i` is an open implementation of them, as
// replaceable as the image library.
//
// A line is (angle, offset): every point (x, y) on it satisfies y * cos(angle) - x * sin(angle) =
// offset, in pixels, x right and y down.
#if !defined(_WIN32)
#define MVTOOLS_API __attribute__((visibility("default")))
#elif defined(MVTOOLS_BUILDING)
#define MVTOOLS_API __declspec(dllexport)
#elif defined(MVTOOLS_STATIC)
#define MVTOOLS_API
#else
#define MVTOOLS_API __declspec(dllimport)
#endif

/// Clears `counts`, then counts the grey values of the whole image. A null image leaves the counts
/// 0.
MVTOOLS_API void mvt_hist(const tImage* image, std::int32_t counts[256]);

/// Sets every pixel to the low 8 bits of `value`. A null image does nothing.
MVTOOLS_API void mvt_constant(tImage* image, int value);

/// Sets one pixel to the low 8 bits of `value`; outside the image, or without one, nothing happens.
MVTOOLS_API void mvt_put_bpixel(tImage* image, int x, int y, int value);

/// Fits a straight line by total least squares: perpendicular distances count, so steep and flat
/// edges fit equally well. Method: K. Pearson, "On lines and planes of closest fit to systems of
/// points in space", Phil. Mag. 2(11), 1901.
///
/// @param x,y   coordinates, `n` each; not changed.
/// @param n     number of points; below 1 gives angle 0 and offset 0.
/// @param mode  0.
/// @param angle   receives the line's direction in radians, in (-pi/2, pi/2].
/// @param offset  receives the offset in pixels.
MVTOOLS_API void mvt_linear_regression(const double* x, const double* y, int n, int mode,
                                       double* angle, double* offset);

/// Signed perpendicular distance of a point from a line, in pixels: y * cos - x * sin - offset.
MVTOOLS_API void mvt_point2line_dist(double x, double y, double angle, double offset, double* dist);

/// The line halfway between two lines, after the second has been rotated by pi where the two
/// directions differ by more than a right angle.
///
/// @param angle   receives the direction in radians, in (-pi/2, pi/2].
/// @param offset  receives the offset in pixels.
MVTOOLS_API void mvt_line_bisect(double angle1, double offset1, double angle2, double offset2,
                                 double* angle, double* offset);
