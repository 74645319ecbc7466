#include "tests/plain/segment_fit.h"

#include <cmath>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "orvandel/classic/mvtools_i.h"

namespace orvandel::plain {
namespace {

/// Chord between two unit directions beyond which they count as opposed: about 45 degrees.
constexpr double kOpposedChord = 0.765;

struct Line {
  double angle;
  double offset;
};

double RmsDistance(const double* x, const double* y, std::int32_t count, const Line& line) {
  double sum = 0.0;
  for (std::int32_t j = 0; j < count; ++j) {
    double distance;
    mvt_point2line_dist(x[j], y[j], line.angle, line.offset, &distance);
    sum += distance * distance;
  }
  return std::sqrt(sum / count);
}

double CircularMean(const double* angles, std::int32_t count) {
  double sines = 0.0;
  double cosines = 0.0;
  for (std::int32_t j = 0; j < count; ++j) {
    sines += Sin(angles[j]);
    cosines += Cos(angles[j]);
  }
  return ArcTan2(sines, cosines);
}

/// Direction along a line, in [-pi, pi), with the gradient on a fixed side of it.
double SegmentDirection(double line_angle, double gradient_direction) {
  const double normal = kPi / 2 - line_angle;
  const double chord =
      Hypot(Cos(normal) - Cos(gradient_direction), Sin(normal) - Sin(gradient_direction));
  double direction = chord >= kOpposedChord ? normal + kPi / 2 : normal - kPi / 2;
  while (direction >= kPi)
    direction -= kTwoPi;
  while (direction < -kPi)
    direction += kTwoPi;
  return direction;
}

}  // namespace

std::optional<LineSegment> FitSegment(const ContourPoints& contour, StraightRun run,
                                      const FitLimits& limits) {
  const std::int32_t num_points = run.last - run.first;
  if (num_points <= limits.min_points) return std::nullopt;

  const double* x = contour.x + run.first;
  const double* y = contour.y + run.first;
  Line line;
  mvt_linear_regression(x, y, num_points, 0, &line.angle, &line.offset);
  const double fit_error = RmsDistance(x, y, num_points, line);
  if (fit_error >= limits.max_fit_error) return std::nullopt;

  LineSegment segment;
  segment.start.x = contour.x[run.first];
  segment.start.y = contour.y[run.first];
  segment.end.x = contour.x[run.last];
  segment.end.y = contour.y[run.last];
  segment.mid.x = (segment.start.x + segment.end.x) * 0.5;
  segment.mid.y = (segment.start.y + segment.end.y) * 0.5;
  segment.line_angle = line.angle;
  segment.line_offset = line.offset;
  segment.num_points = num_points;
  segment.fit_error = fit_error;
  segment.contour_index = contour.contour_index;
  segment.length = Hypot(segment.start.x - segment.end.x, segment.start.y - segment.end.y);
  segment.gradient_direction = CircularMean(contour.g + run.first, num_points);
  segment.direction = SegmentDirection(line.angle, segment.gradient_direction);
  return segment;
}

}  // namespace orvandel::plain
