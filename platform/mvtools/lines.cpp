#include <cmath>
#include <cstdint>
#include <cstring>

#include "platform/mvtools_i.h"
#include "platform/numbers.h"

namespace {

using orvandel::kPi;

constexpr double kHalfPi = 0.5 * kPi;

struct Line {
  double angle = 0.0;
  double offset = 0.0;
};

double Mean(const double* values, int n) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i)
    sum += values[i];
  return sum / n;
}

Line FitLine(const double* x, const double* y, int n) {
  const double mean_x = Mean(x, n);
  const double mean_y = Mean(y, n);
  double sxx = 0.0;
  double syy = 0.0;
  double sxy = 0.0;
  for (int i = 0; i < n; ++i) {
    const double dx = x[i] - mean_x;
    const double dy = y[i] - mean_y;
    sxx += dx * dx;
    syy += dy * dy;
    sxy += dx * dy;
  }
  double angle = 0.5 * std::atan2(2.0 * sxy, sxx - syy);
  if (angle == -kHalfPi) angle = kHalfPi;
  return {angle, mean_y * std::cos(angle) - mean_x * std::sin(angle)};
}

/// The same line with its direction in (-pi/2, pi/2]; `angle` is in [-pi, pi]. Half a turn negates
/// the offset.
Line Upright(Line line) {
  if (line.angle > kHalfPi) return {line.angle - kPi, -line.offset};
  if (line.angle <= -kHalfPi) return {line.angle + kPi, -line.offset};
  return line;
}

Line Bisect(Line first, Line second) {
  if (std::cos(first.angle - second.angle) < 0.0) second = {second.angle + kPi, -second.offset};
  const double c = std::cos(first.angle) + std::cos(second.angle);
  const double s = std::sin(first.angle) + std::sin(second.angle);
  return Upright({std::atan2(s, c), (first.offset + second.offset) / std::hypot(c, s)});
}

/// Cosine and sine of the angle that was asked for last: the points of a run are measured against one line.
struct LastAngle {
  std::uint64_t bits = 0;
  double cosine = 1.0;
  double sine = 0.0;
};

const LastAngle& Resolve(double angle) {
  thread_local LastAngle last;
  std::uint64_t bits;
  std::memcpy(&bits, &angle, sizeof(bits));
  if (bits != last.bits) last = {bits, std::cos(angle), std::sin(angle)};
  return last;
}

void Store(Line line, double* angle, double* offset) {
  if (angle != nullptr) *angle = line.angle;
  if (offset != nullptr) *offset = line.offset;
}

}  // namespace

void mvt_linear_regression(const double* x, const double* y, int n, int /*mode*/, double* angle,
                           double* offset) {
  const bool has_points = n >= 1 && x != nullptr && y != nullptr;
  Store(has_points ? FitLine(x, y, n) : Line{}, angle, offset);
}

void mvt_point2line_dist(double x, double y, double angle, double offset, double* dist) {
  if (dist == nullptr) return;
  const LastAngle& line = Resolve(angle);
  *dist = y * line.cosine - x * line.sine - offset;
}

void mvt_line_bisect(double angle1, double offset1, double angle2, double offset2, double* angle,
                     double* offset) {
  Store(Bisect({angle1, offset1}, {angle2, offset2}), angle, offset);
}
