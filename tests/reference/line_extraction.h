#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "base/trigonometry.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/line_extracter.h"
#include "orvandel/classic/mvtools_i.h"
#include "tests/reference/segment_sort.h"

namespace orvandel::test {

/// Line extraction in its simplest form, one point and one step after the other. A
/// `CLineExtracter` gives the parameters only.

struct ReferenceContour {
  const double* x;
  const double* y;
  const double* g;
  int* f;
  int n;
  bool closed;
  int index;
};

inline ReferenceContour ReferenceContourOf(void* set, int index) {
  return {ctd_contour_xa(set, index),
          ctd_contour_ya(set, index),
          ctd_contour_ga(set, index),
          ctd_contour_fa(set, index),
          ctd_contour_size(set, index),
          ctd_contour_closed(set, index) != 0,
          index};
}

/// Signed distance of point i from the line through points a and b.
inline double ReferenceChordDistance(const double* x, const double* y, int a, int i, int b) {
  const double chord_angle = ArcTan2(-(y[b] - y[a]), x[b] - x[a]);
  const double point_angle = ArcTan2(-(y[b] - y[i]), x[b] - x[i]);
  const double dx = x[b] - x[i];
  const double dy = y[b] - y[i];
  return Sin(chord_angle - point_angle) * std::sqrt(dx * dx + dy * dy);
}

inline int ReferenceMarkStraightPoints(const CLineExtracter& options, const double* x,
                                       const double* y, int* f, int n, int closed) {
  const int k = options.neighbour_offset;
  if (n < 2 * k + 1) return 1;
  const int m = n - 2;
  const int first = closed != 0 ? 0 : k;
  const int last = closed != 0 ? n - 1 : n - k - 1;
  for (int i = first; i <= last; ++i) {
    const int a = (i - k + m) % m;
    const int b = (i + k) % m;
    const double d = ReferenceChordDistance(x, y, a, i, b);
    f[i] = options.max_deviation > std::abs(d) ? 1 : 0;
  }
  return 0;
}

/// Points first .. end of a contour; the line is fitted through first .. end - 1.
struct ReferenceRun {
  int first;
  int end;
};

inline std::vector<ReferenceRun> ReferenceRuns(const ReferenceContour& contour) {
  std::vector<ReferenceRun> runs;
  int i = 0;
  while (i < contour.n) {
    if (contour.f[i] != 1) {
      ++i;
      continue;
    }
    int e = i;
    while (e < contour.n - 1) {
      ++e;
      if (contour.f[e] == 0) break;
    }
    runs.push_back({i, e - 1});
    i = e + 1;
  }
  return runs;
}

/// Root mean square distance of the run's points, without its end point, from the segment's line.
inline double ReferenceFitError(const ReferenceContour& contour, ReferenceRun run,
                                const CLineSegment& segment) {
  double sum = 0;
  for (int j = run.first; j < run.end; ++j) {
    double distance = 0;
    mvt_point2line_dist(contour.x[j], contour.y[j], segment.line_angle, segment.line_offset,
                        &distance);
    sum += distance * distance;
  }
  return std::sqrt(sum / (run.end - run.first));
}

inline double ReferenceGradientDirection(const ReferenceContour& contour, ReferenceRun run) {
  double sum_sin = 0;
  double sum_cos = 0;
  for (int j = run.first; j < run.end; ++j) {
    sum_sin += Sin(contour.g[j]);
    sum_cos += Cos(contour.g[j]);
  }
  return ArcTan2(sum_sin, sum_cos);
}

inline double ReferenceDirection(double line_angle, double gradient_direction) {
  constexpr double kPlainPi = std::numbers::pi;
  const double normal = kPlainPi / 2 - line_angle;
  const double chord =
      Hypot(Cos(normal) - Cos(gradient_direction), Sin(normal) - Sin(gradient_direction));
  double direction = chord >= 0.765 ? normal + kPlainPi / 2 : normal - kPlainPi / 2;
  while (direction >= kPlainPi)
    direction -= 2 * kPlainPi;
  while (direction < -kPlainPi)
    direction += 2 * kPlainPi;
  return direction;
}

/// Appends the run's segment where it is long and straight enough; returns whether it did.
inline bool ReferenceAppendRun(const CLineExtracter& options, const ReferenceContour& contour,
                               ReferenceRun run, std::vector<CLineSegment>& segments) {
  const int p = run.end - run.first;
  if (p <= options.min_points) return false;

  CLineSegment s;
  mvt_linear_regression(contour.x + run.first, contour.y + run.first, p, 0, &s.line_angle,
                        &s.line_offset);
  s.fit_error = ReferenceFitError(contour, run, s);
  if (s.fit_error >= options.max_fit_error) return false;

  s.start_x = contour.x[run.first];
  s.start_y = contour.y[run.first];
  s.end_x = contour.x[run.end];
  s.end_y = contour.y[run.end];
  s.mid_x = (s.start_x + s.end_x) * 0.5;
  s.mid_y = (s.start_y + s.end_y) * 0.5;
  s.num_points = p;
  s.contour_index = contour.index;
  s.length = Hypot(s.start_x - s.end_x, s.start_y - s.end_y);
  s.gradient_direction = ReferenceGradientDirection(contour, run);
  s.direction = ReferenceDirection(s.line_angle, s.gradient_direction);
  segments.push_back(s);
  return true;
}

inline CLineSegment ReferenceJoined(const CLineSegment& a, const CLineSegment& b) {
  CLineSegment joined;
  joined.start_x = b.start_x;
  joined.start_y = b.start_y;
  joined.end_x = a.end_x;
  joined.end_y = a.end_y;
  joined.mid_x = (joined.start_x + joined.end_x) * 0.5;
  joined.mid_y = (joined.start_y + joined.end_y) * 0.5;
  mvt_line_bisect(b.line_angle, b.line_offset, a.line_angle, a.line_offset, &joined.line_angle,
                  &joined.line_offset);
  joined.num_points = a.num_points + b.num_points;
  joined.fit_error = (a.fit_error + b.fit_error) * 0.5;
  joined.contour_index = a.contour_index;
  return joined;
}

/// Joins the last segment of a closed contour to its first one where they continue each other.
inline void ReferenceJoinSeam(const CLineExtracter& options, int contour_index,
                              std::vector<CLineSegment>& segments) {
  if (segments.size() <= 2) return;
  const std::size_t last = segments.size() - 1;
  std::size_t first = last;
  while (first > 0 && segments[first - 1].contour_index == contour_index)
    --first;
  if (first == last) return;

  const CLineSegment a = segments[first];
  const CLineSegment b = segments[last];
  const double gap = Hypot(a.start_x - b.end_x, a.start_y - b.end_y);
  double angle = std::abs(a.line_angle - b.line_angle);
  while (angle > std::numbers::pi)
    angle = 2 * std::numbers::pi - angle;
  if (!(options.max_join_angle > angle)) return;
  if (!(static_cast<double>(options.neighbour_offset) > gap)) return;
  segments.pop_back();
  segments[first] = ReferenceJoined(a, b);
}

/// What `Extract` leaves in `segments`; writes the set's flags as it does.
inline std::vector<CLineSegment> ReferenceExtract(const CLineExtracter& options, void* set) {
  const int num_contours = ctd_contour_count(set);
  for (int c = 0; c < num_contours; ++c) {
    const ReferenceContour contour = ReferenceContourOf(set, c);
    ReferenceMarkStraightPoints(options, contour.x, contour.y, contour.f, contour.n,
                                contour.closed);
  }
  std::vector<CLineSegment> segments;
  for (int c = 0; c < num_contours; ++c) {
    const ReferenceContour contour = ReferenceContourOf(set, c);
    bool appended = false;
    for (const ReferenceRun run : ReferenceRuns(contour))
      appended = ReferenceAppendRun(options, contour, run, segments) || appended;
    if (contour.closed && appended) ReferenceJoinSeam(options, c, segments);
  }
  ReferenceSegmentSort(segments);
  return segments;
}

}  // namespace orvandel::test
