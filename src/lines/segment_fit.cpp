#include "lines/segment_fit.h"

#include <cmath>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "orvandel/classic/mvtools_i.h"

namespace orvandel {
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

double CircularMean(const double* angles, std::int32_t count, SinCosMemo& memo) {
  double sines = 0.0;
  double cosines = 0.0;
  for (std::int32_t j = 0; j < count; ++j) {
    const auto [sine, cosine] = memo.Of(angles[j]);
    sines += sine;
    cosines += cosine;
  }
  return ArcTan2(sines, cosines);
}

/// Direction along a line, in [-pi, pi), with the gradient on a fixed side of it.
double SegmentDirection(double line_angle, double gradient_direction) {
  const double normal = kPi / 2 - line_angle;
  const SinCos a = SinCosOf(normal);
  const SinCos b = SinCosOf(gradient_direction);
  const double chord = Hypot(a.cosine - b.cosine, a.sine - b.sine);
  double direction = chord >= kOpposedChord ? normal + kPi / 2 : normal - kPi / 2;
  while (direction >= kPi)
    direction -= kTwoPi;
  while (direction < -kPi)
    direction += kTwoPi;
  return direction;
}

}  // namespace

std::optional<CLineSegment> FitSegment(const ContourPoints& contour, StraightRun run,
                                       const FitLimits& limits, SinCosMemo& memo) {
  const std::int32_t num_points = run.last - run.first;
  if (num_points <= limits.min_points) return std::nullopt;

  const double* x = contour.x + run.first;
  const double* y = contour.y + run.first;
  Line line;
  mvt_linear_regression(x, y, num_points, 0, &line.angle, &line.offset);
  const double fit_error = RmsDistance(x, y, num_points, line);
  if (fit_error >= limits.max_fit_error) return std::nullopt;

  CLineSegment segment;
  segment.start_x = contour.x[run.first];
  segment.start_y = contour.y[run.first];
  segment.end_x = contour.x[run.last];
  segment.end_y = contour.y[run.last];
  segment.mid_x = (segment.start_x + segment.end_x) * 0.5;
  segment.mid_y = (segment.start_y + segment.end_y) * 0.5;
  segment.line_angle = line.angle;
  segment.line_offset = line.offset;
  segment.num_points = num_points;
  segment.fit_error = fit_error;
  segment.contour_index = contour.contour_index;
  segment.length = Hypot(segment.start_x - segment.end_x, segment.start_y - segment.end_y);
  segment.gradient_direction = CircularMean(contour.g + run.first, num_points, memo);
  segment.direction = SegmentDirection(line.angle, segment.gradient_direction);
  return segment;
}

}  // namespace orvandel
