#include "evaluation/summary_table.h"

#include <array>
#include <cmath>
#include <cstddef>

#include <fmt/format.h>

#include "evaluation/csv.h"
#include "evaluation/number_text.h"

namespace orvandel::evaluation {
namespace {

std::string Pair(const MedianAndP90& value, int decimals) {
  return fmt::format("{:>7} {:>7}", Fixed(value.median, decimals), Fixed(value.p90, decimals));
}

std::string CsvPair(const MedianAndP90& value) {
  return fmt::format("{},{}", Fixed(value.median, 4, ""), Fixed(value.p90, 4, ""));
}

std::string OutOf(int part, int whole) {
  return fmt::format("{}/{}", part, whole);
}

std::string ErrorFields(const CaseResult& r) {
  if (!r.error) return ",,";
  return fmt::format("{},{},{}", Fixed(r.error->corner_px, 4, ""), Fixed(r.error->angle_deg, 5, ""),
                     Fixed(r.error->scale_percent, 4, ""));
}

std::string PoseFields(const CaseResult& r) {
  if (!r.finding || r.finding->matches.empty()) return ",,,,";
  const Match& match = r.finding->matches.front();
  const Similarity& pose = match.scene_from_pattern;
  return fmt::format("{},{},{},{},{}", Fixed(match.score, r.finding->score_decimals, ""),
                     Fixed(pose.x, 4, ""), Fixed(pose.y, 4, ""), Fixed(Degrees(pose.angle), 5, ""),
                     Fixed(pose.scale, 6, ""));
}

std::string InstanceFields(const CaseResult& r) {
  return fmt::format("{},{},{},{}", r.symmetry.fold, r.num_instances, r.instance_errors.size(),
                     r.num_false);
}

std::string DeviationFields(const CaseResult& r) {
  if (!r.finding || r.finding->matches.empty() || !r.finding->matches.front().covariance)
    return ",,,,,";
  const std::array<double, 16>& covariance = *r.finding->matches.front().covariance;
  const auto deviation = [&covariance](std::size_t i) { return std::sqrt(covariance[5 * i]); };
  const std::string squared = r.squared_deviation ? Fixed(*r.squared_deviation, 4, "") : "";
  return fmt::format("{},{},{},{},{},{}", Fixed(deviation(0), 6, ""), Fixed(deviation(1), 6, ""),
                     Fixed(Degrees(deviation(2)), 6, ""), Fixed(deviation(3), 8, ""), squared,
                     r.squared_deviation ? std::to_string(r.num_free) : "");
}

}  // namespace

std::string SummaryTableHead(std::size_t name_width) {
  return fmt::format(
      "{:{}}  {:>9} {:>8} {:>9} {:>7}  {:^15}  {:^15}  {:^15}  {:^15}  {:^15}\n"
      "{:{}}  {:>9} {:>8} {:>9} {:>7}  {:>7} {:>7}  {:>7} {:>7}  {:>7} {:>7}  {:>7} {:>7}  {:>9} "
      "{:>5}\n",
      "", name_width, "", "", "", "false", "corner px", "angle deg", "scale %", "time ms",
      "instances",  //
      "suite", name_width, "found", "accepted", "misplaced", "finds", "median", "p90", "median",
      "p90", "median", "p90", "median", "p90", "found", "false");
}

std::string SummaryTableRow(const SuiteSummary& s, std::size_t name_width) {
  return fmt::format("{:{}}  {:>9} {:>8} {:>9} {:>7}  {}  {}  {}  {}  {:>9} {:>5}\n", s.name,
                     name_width, OutOf(s.num_found, s.num_present), s.num_accepted, s.num_misplaced,
                     OutOf(s.num_false_finds, s.num_absent), Pair(s.corner_px, 4),
                     Pair(s.angle_deg, 4), Pair(s.scale_percent, 4), Pair(s.time_ms, 2),
                     OutOf(s.num_instances_found, s.num_instances), s.num_instances_false);
}

std::string SummaryCsvHead() {
  return "suite,cases,with_pattern,found,accepted,misplaced,without_pattern,false_finds,"
         "corner_median_px,corner_p90_px,angle_median_deg,angle_p90_deg,scale_median_percent,"
         "scale_p90_percent,time_median_ms,time_p90_ms,instances,instances_found,instances_false,"
         "instance_corner_median_px,instance_corner_p90_px,with_covariance,inside_95\n";
}

std::string SummaryCsvRow(const SuiteSummary& s) {
  return fmt::format("{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", CsvField(s.name),
                     s.num_cases, s.num_present, s.num_found, s.num_accepted, s.num_misplaced,
                     s.num_absent, s.num_false_finds, CsvPair(s.corner_px), CsvPair(s.angle_deg),
                     CsvPair(s.scale_percent), CsvPair(s.time_ms), s.num_instances,
                     s.num_instances_found, s.num_instances_false, CsvPair(s.instance_corner_px),
                     s.num_with_covariance, s.num_inside_95);
}

std::string CasesCsv(std::span<const CaseResult> results) {
  std::string text =
      "suite,case,with_pattern,status,found,corner_px,angle_error_deg,scale_error_percent,score,x,"
      "y,angle_deg,scale,time_ms,timed_out,symmetry,instances,instances_found,instances_false,sd_x,"
      "sd_y,sd_angle_deg,sd_scale,squared_deviation,free_values\n";
  for (const CaseResult& r : results) {
    text += fmt::format(
        "{},{},{},{},{},{},{},{},{},{},{}\n", CsvField(r.suite), CsvField(r.name),
        r.is_present ? 1 : 0, r.finding ? r.finding->status : "unusable", r.is_found ? 1 : 0,
        ErrorFields(r), PoseFields(r), r.finding ? Fixed(r.finding->time_ms, 3) : "",
        r.finding && r.finding->timed_out ? 1 : 0, InstanceFields(r), DeviationFields(r));
  }
  return text;
}

}  // namespace orvandel::evaluation
