#pragma once

#include "base/geometry.h"
#include "evaluation/finder.h"

namespace orvandel::evaluation {

double Degrees(double radians);
double Radians(double degrees);

/// Rotations about the centre of its image that map a pattern onto itself.
struct Symmetry {
  int fold = 1;  ///< 1 none but the full turn, n every n-th part of it, 0 any angle

  bool IsFullCircle() const { return fold == 0; }
};

/// Centre of the pattern image, pattern pixels.
Point CentreOf(const PatternFrame& frame);

/// The true pose among those that look the same whose angle is nearest to the found one's.
Similarity NearestEquivalent(const Similarity& truth, double found_angle, Symmetry symmetry);

/// How far a pose is from the truth.
struct PoseError {
  double corner_px = 0;      ///< mean displacement of the pattern image's four corners
  double angle_deg = 0;      ///< 0 to 180 / fold; 0 for full circles
  double scale_percent = 0;  ///< of the true scale
};

/// The error against the nearest of the poses that look the same. Full circles are compared by
/// centre and scale alone.
///
/// @param found   of pattern points measured from the frame's origin.
/// @param truth   of pattern points measured from the centre of the pattern image, as manifests
///                have it; its scale is above 0.
PoseError ErrorOf(const Similarity& found, const Similarity& truth, const PatternFrame& frame,
                  Symmetry symmetry = {});

// How far off the corners may be on average for a pose to count as found; less than this, that is.
// A suite says which of the two holds (`Tolerance`).

/// 5 % of the pattern image's diagonal, whatever the scale.
double CornerTolerancePx(const PatternFrame& frame);

/// 3 % of the diagonal at the true scale, at least 1.5 pixels, and beyond that what the truth
/// itself is off.
///
/// @param fit_max_px  largest distance of a true corner from the manifest's pose, where the mapping
///                    is no similarity.
double ScaledCornerTolerancePx(const PatternFrame& frame, double scale, double fit_max_px = 0);

/// What counts as found.
struct Tolerance {
  bool is_scaled = false;  ///< `ScaledCornerTolerancePx`, else `CornerTolerancePx`
  double fit_max_px = 0;   ///< as for the scaled one, which alone knows it

  /// @param scale  the true one.
  double Px(const PatternFrame& frame, double scale) const {
    return is_scaled ? ScaledCornerTolerancePx(frame, scale, fit_max_px) : CornerTolerancePx(frame);
  }
};

}  // namespace orvandel::evaluation
