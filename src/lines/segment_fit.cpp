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

double CircularMean(const double* angles, std::int32_t count, SinCosCache& cache) {
  double sines = 0.0;
  double cosines = 0.0;
  for (std::int32_t j = 0; j < count; ++j) {
    const auto [sine, cosine] = cache.Of(angles[j]);
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

std::optional<LineSegment> FitSegment(const ContourView& contour, StraightRun run,
                                      const LineOptions& options, SinCosCache& cache) {
  const std::int32_t num_points = run.last - run.first;
  if (num_points <= options.min_points) return std::nullopt;

  const double* x = contour.x.data() + run.first;
  const double* y = contour.y.data() + run.first;
  Line line;
  mvt_linear_regression(x, y, num_points, 0, &line.angle, &line.offset);
  const double fit_error = RmsDistance(x, y, num_points, line);
  if (fit_error >= options.max_fit_error) return std::nullopt;

  LineSegment segment;
  segment.start = {x[0], y[0]};
  segment.end = {x[num_points], y[num_points]};
  segment.mid = 0.5 * (segment.start + segment.end);
  segment.line_angle = line.angle;
  segment.line_offset = line.offset;
  segment.num_points = num_points;
  segment.fit_error = fit_error;
  const Point back = segment.start - segment.end;
  segment.length = Hypot(back.x, back.y);
  segment.gradient_direction = CircularMean(contour.g.data() + run.first, num_points, cache);
  segment.direction = SegmentDirection(line.angle, segment.gradient_direction);
  return segment;
}

}  // namespace orvandel
