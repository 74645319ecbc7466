#include "cli/evaluation.h"

#include <array>
#include <cmath>

#include "cli/statistics.h"

namespace orvandel::cli {
namespace {

constexpr double kFoundShareOfDiagonal = 0.05;

std::array<Point, 4> Corners(double width, double height) {
  return {Point{0, 0}, Point{width, 0}, Point{width, height}, Point{0, height}};
}

MedianAndP90 MedianAndP90Of(const std::vector<double>& values) {
  return {Percentile(values, 50), Percentile(values, 90)};
}

}  // namespace

PoseError ErrorOf(const Pose& found, const Pose& truth, int pattern_width, int pattern_height) {
  PoseError error;
  for (const Point& corner : Corners(pattern_width, pattern_height))
    error.corner_px += Distance(found * corner, truth * corner) / 4;
  error.angle_deg = std::abs(Degrees(NormalizedAngle(found.angle - truth.angle)));
  error.scale_percent = 100 * std::abs(found.scale / truth.scale - 1);
  return error;
}

bool IsAtInstance(const PoseError& error, int pattern_width, int pattern_height) {
  return error.corner_px < kFoundShareOfDiagonal * std::hypot(pattern_width, pattern_height);
}

CaseResult Judge(const std::string& suite, const TestCase& test_case, const FindResult& result,
                 int pattern_width, int pattern_height) {
  CaseResult judged;
  judged.suite = suite;
  judged.name = test_case.name;
  judged.is_present = !test_case.instances.empty();
  judged.result = result;
  if (!result.HasPose()) return judged;
  for (const TrueInstance& instance : test_case.instances) {
    const Pose truth = PoseOf(instance, pattern_width, pattern_height);
    const PoseError error = ErrorOf(result.pose, truth, pattern_width, pattern_height);
    if (!judged.error || error.corner_px < judged.error->corner_px) judged.error = error;
  }
  judged.is_found = judged.error && IsAtInstance(*judged.error, pattern_width, pattern_height);
  return judged;
}

SuiteSummary Summarize(const std::string& name, std::span<const CaseResult> results) {
  SuiteSummary summary;
  summary.name = name;
  std::vector<double> corner_px;
  std::vector<double> angle_deg;
  std::vector<double> scale_percent;
  std::vector<double> time_ms;
  for (const CaseResult& r : results) {
    ++summary.num_cases;
    ++(r.is_present ? summary.num_present : summary.num_absent);
    if (r.IsAccepted() && !r.is_present) ++summary.num_false_finds;
    if (r.IsAccepted() && r.is_present)
      ++(r.is_found ? summary.num_accepted : summary.num_misplaced);
    if (r.result) time_ms.push_back(r.result->time_ms);
    if (!r.is_found) continue;
    ++summary.num_found;
    corner_px.push_back(r.error->corner_px);
    angle_deg.push_back(r.error->angle_deg);
    scale_percent.push_back(r.error->scale_percent);
  }
  summary.corner_px = MedianAndP90Of(corner_px);
  summary.angle_deg = MedianAndP90Of(angle_deg);
  summary.scale_percent = MedianAndP90Of(scale_percent);
  summary.time_ms = MedianAndP90Of(time_ms);
  return summary;
}

}  // namespace orvandel::cli
