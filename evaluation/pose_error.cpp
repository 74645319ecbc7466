#include "evaluation/pose_error.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/rounding.h"

namespace orvandel::evaluation {
namespace {

constexpr double kDegreesPerRadian = 180.0 / kPi;
constexpr double kRadiansPerDegree = kPi / 180.0;

constexpr double kToleranceShare = 0.05;
constexpr double kScaledToleranceShare = 0.03;
constexpr double kLeastTolerancePx = 1.5;  // small patterns are not held to parts of a pixel

double DiagonalPx(const PatternFrame& frame) {
  return Hypot(frame.width, frame.height);
}

/// The corners of the image's border, half a pixel outside the centres of the corner pixels.
std::array<Point, 4> Corners(const PatternFrame& frame) {
  const double right = frame.width - 0.5;
  const double bottom = frame.height - 0.5;
  return {Point{-0.5, -0.5}, Point{right, -0.5}, Point{right, bottom}, Point{-0.5, bottom}};
}

double MeanCornerDistance(const Similarity& found, const Similarity& truth,
                          const PatternFrame& frame) {
  const SimilarityMap found_map(found);
  const SimilarityMap true_map(truth);
  const Point centre = CentreOf(frame);
  double mean = 0;
  for (const Point corner : Corners(frame)) {
    const Point step = true_map * (corner - centre) - found_map * (corner - frame.origin);
    mean += Hypot(step.x, step.y) / 4;
  }
  return mean;
}

}  // namespace

double Degrees(double radians) {
  return radians * kDegreesPerRadian;
}

double Radians(double degrees) {
  return degrees * kRadiansPerDegree;
}

Point CentreOf(const PatternFrame& frame) {
  return {(frame.width - 1) / 2.0, (frame.height - 1) / 2.0};
}

Similarity NearestEquivalent(const Similarity& truth, double found_angle, Symmetry symmetry) {
  Similarity nearest = truth;
  if (symmetry.IsFullCircle()) {
    nearest.angle = found_angle;
  } else if (symmetry.fold > 1) {
    const double step = kTwoPi / symmetry.fold;
    nearest.angle += step * std::round((found_angle - truth.angle) / step);
  }
  return nearest;
}

PoseError ErrorOf(const Similarity& found, const Similarity& truth, const PatternFrame& frame,
                  Symmetry symmetry) {
  const Similarity nearest = NearestEquivalent(truth, found.angle, symmetry);
  return {.corner_px = MeanCornerDistance(found, nearest, frame),
          .angle_deg = std::abs(Degrees(NormalizedAngle(found.angle - nearest.angle))),
          .scale_percent = 100 * std::abs(found.scale / truth.scale - 1)};
}

double CornerTolerancePx(const PatternFrame& frame) {
  return kToleranceShare * DiagonalPx(frame);
}

double ScaledCornerTolerancePx(const PatternFrame& frame, double scale, double fit_max_px) {
  return std::max(kScaledToleranceShare * scale * DiagonalPx(frame), kLeastTolerancePx) +
         fit_max_px;
}

}  // namespace orvandel::evaluation
