#include <cstdint>
#include <cstring>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "orvandel/classic/mvtools_i.h"

namespace {

using orvandel::ArcTan2;
using orvandel::Cos;
using orvandel::Hypot;
using orvandel::kPi;
using orvandel::SinCos;
using orvandel::SinCosOf;

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
  double angle = 0.5 * ArcTan2(2.0 * sxy, sxx - syy);
  if (angle == -kHalfPi) angle = kHalfPi;
  const auto [sine, cosine] = SinCosOf(angle);
  return {angle, mean_y * cosine - mean_x * sine};
}

/// The same line with its direction in (-pi/2, pi/2]; `angle` is in [-pi, pi]. Half a turn negates
/// the offset.
Line Normalised(Line line) {
  if (line.angle > kHalfPi) return {line.angle - kPi, -line.offset};
  if (line.angle <= -kHalfPi) return {line.angle + kPi, -line.offset};
  return line;
}

Line Bisect(Line first, Line second) {
  if (Cos(first.angle - second.angle) < 0.0) second = {second.angle + kPi, -second.offset};
  const SinCos a = SinCosOf(first.angle);
  const SinCos b = SinCosOf(second.angle);
  const double c = a.cosine + b.cosine;
  const double s = a.sine + b.sine;
  return Normalised({ArcTan2(s, c), (first.offset + second.offset) / Hypot(c, s)});
}

/// Sine and cosine of an angle, cached for the next call: the points of a run are measured against one line.
SinCos CachedSinCosOf(double angle) {
  struct LastAngle {
    std::uint64_t bits = 0;
    SinCos value;
  };
  thread_local LastAngle last;
  std::uint64_t bits;
  std::memcpy(&bits, &angle, sizeof(bits));
  if (bits != last.bits) last = {bits, SinCosOf(angle)};
  return last.value;
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
  const auto [sine, cosine] = CachedSinCosOf(angle);
  *dist = y * cosine - x * sine - offset;
}

void mvt_line_bisect(double angle1, double offset1, double angle2, double offset2, double* angle,
                     double* offset) {
  Store(Bisect({angle1, offset1}, {angle2, offset2}), angle, offset);
}
