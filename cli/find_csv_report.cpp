#include <cmath>

#include <fmt/format.h>

#include "cli/find_report.h"
#include "evaluation/csv.h"
#include "evaluation/number_text.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::CsvField;
using evaluation::Degrees;
using evaluation::Fixed;

double DeviationOf(const shape::Match& match, PoseValue value) {
  return std::sqrt(match.covariance[5 * value]);
}

namespace {

constexpr const char* kHead = "scene,status,found,x,y,angle_deg,angle_rad,scale,score,time_ms";
constexpr const char* kHeadOfShapes =
    ",pattern,match,coverage,clutter,fit_error,contrast,polarity,share_outside,sd_x,sd_y,"
    "sd_angle_deg,sd_scale,timed_out,pyramid_us,response_maps_us,coarse_search_us,tracking_us,"
    "refinement_us,scoring_us";

std::string DetailFields(const shape::Match& match) {
  return fmt::format(
      "{},{},{},{},{},{},{},{},{},{}", Fixed(match.coverage, 5, ""), Fixed(match.clutter, 5, ""),
      Fixed(match.fit_error, 5, ""), Fixed(match.contrast, 5, ""),
      match.is_reversed ? "reversed" : "same", Fixed(match.share_outside, 5, ""),
      Fixed(DeviationOf(match, kX), 6, ""), Fixed(DeviationOf(match, kY), 6, ""),
      Fixed(Degrees(DeviationOf(match, kAngle)), 6, ""), Fixed(DeviationOf(match, kScale), 8, ""));
}

std::string StageFields(const FindOutcome& outcome) {
  if (!outcome.result || !outcome.result->stage_times_us) return ",,,,,";
  const shape::StageTimes& us = *outcome.result->stage_times_us;
  return fmt::format("{},{},{},{},{},{}", Fixed(us.pyramid, 1), Fixed(us.response_maps, 1),
                     Fixed(us.coarse_search, 1), Fixed(us.tracking, 1), Fixed(us.refinement, 1),
                     Fixed(us.scoring, 1));
}

/// x to score.
std::string PoseFields(const FoundMatch& match) {
  const Similarity& pose = match.scene_from_pattern;
  const bool is_fine = match.details.has_value();  // digits that the engine can fill
  const auto decimals = [is_fine](int coarse, int fine) { return is_fine ? fine : coarse; };
  return fmt::format(
      "{},{},{},{},{},{}", Fixed(pose.x, decimals(4, 5), ""), Fixed(pose.y, decimals(4, 5), ""),
      Fixed(Degrees(pose.angle), decimals(5, 6), ""), Fixed(pose.angle, decimals(7, 8), ""),
      Fixed(pose.scale, decimals(6, 7), ""), Fixed(match.score, decimals(3, 6), ""));
}

class CsvReport : public FindReport {
 public:
  CsvReport(const FindContext& context, Report& report) : context_(context), report_(report) {
    report_.Print(kHead);
    if (IsOfShapes())
      report_.Print(kHeadOfShapes);
    else if (context_.HasSeveralPatterns())
      report_.Print(",pattern");
    report_.Print("\n");
  }

  void Add(const FindOutcome& outcome) override {
    if (!outcome.result || outcome.result->matches.empty()) return PrintRow(outcome, nullptr, 0);
    int number = 0;
    for (const FoundMatch& match : outcome.result->matches)
      PrintRow(outcome, &match, ++number);
  }

  void End() override {}

 private:
  bool IsOfShapes() const { return context_.options.engine == Engine::kShapes; }

  void PrintRow(const FindOutcome& outcome, const FoundMatch* match, int number) {
    report_.Print(fmt::format("{},{},{},{},{}", CsvField(outcome.scene), outcome.Status(),
                              outcome.IsFound() ? 1 : 0, match ? PoseFields(*match) : ",,,,,",
                              outcome.result ? Fixed(outcome.result->time_ms, 3) : ""));
    const std::string pattern = CsvField(context_.PatternOf(outcome));
    if (IsOfShapes()) {
      report_.Print(fmt::format(",{},{},{},{},{}", pattern, match ? std::to_string(number) : "",
                                match ? DetailFields(*match->details) : ",,,,,,,,,",
                                outcome.result && outcome.result->timed_out ? 1 : 0,
                                StageFields(outcome)));
    } else if (context_.HasSeveralPatterns()) {
      report_.Print("," + pattern);
    }
    report_.Print("\n");
  }

  const FindContext& context_;
  Report& report_;
};

}  // namespace

std::unique_ptr<FindReport> MakeFindCsvReport(const FindContext& context, Report& report) {
  return std::make_unique<CsvReport>(context, report);
}

}  // namespace orvandel::cli
