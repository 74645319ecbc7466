#include "evaluation/suite_summary.h"

#include <vector>

#include "evaluation/pose_deviation.h"
#include "evaluation/statistics.h"

namespace orvandel::evaluation {
namespace {

MedianAndP90 MedianAndP90Of(const std::vector<double>& values) {
  return {Median(values), Percentile(values, 90)};
}

void CountInstances(std::span<const CaseResult> results, SuiteSummary& summary) {
  std::vector<double> corner_px;
  for (const CaseResult& r : results) {
    summary.num_instances += r.num_instances;
    summary.num_instances_found += static_cast<int>(r.instance_errors.size());
    summary.num_instances_false += r.num_false;
    for (const PoseError& error : r.instance_errors)
      corner_px.push_back(error.corner_px);
  }
  summary.instance_corner_px = MedianAndP90Of(corner_px);
}

void CountCovariances(std::span<const CaseResult> results, SuiteSummary& summary) {
  for (const CaseResult& r : results) {
    if (!r.squared_deviation) continue;
    ++summary.num_with_covariance;
    if (*r.squared_deviation <= NinetyFivePercent(r.num_free)) ++summary.num_inside_95;
  }
}

}  // namespace

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
    if (r.finding) time_ms.push_back(r.finding->time_ms);
    if (!r.is_found) continue;
    ++summary.num_found;
    corner_px.push_back(r.error->corner_px);
    if (!r.symmetry.IsFullCircle()) angle_deg.push_back(r.error->angle_deg);
    scale_percent.push_back(r.error->scale_percent);
  }
  summary.corner_px = MedianAndP90Of(corner_px);
  summary.angle_deg = MedianAndP90Of(angle_deg);
  summary.scale_percent = MedianAndP90Of(scale_percent);
  summary.time_ms = MedianAndP90Of(time_ms);
  CountInstances(results, summary);
  CountCovariances(results, summary);
  return summary;
}

}  // namespace orvandel::evaluation
