#include <cmath>

#include <nlohmann/json.hpp>

#include "cli/find_report.h"
#include "cli/version.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::Degrees;

namespace {

using Json = nlohmann::ordered_json;

Json NumberOrNull(double value) {
  return std::isfinite(value) ? Json(value) : Json();
}

Json PatternObject(const FindContext& context) {
  const PatternFacts& facts = context.facts;
  return {{"file", context.pattern},
          {"width", facts.width},
          {"height", facts.height},
          {"reference_x", NumberOrNull(facts.reference.x)},
          {"reference_y", NumberOrNull(facts.reference.y)},
          {"contours", facts.num_contours},
          {"contour_points", facts.num_points},
          {"lines", facts.num_lines}};
}

Json OptionsObject(const SearchOptions& options, int edge_threshold) {
  return {{"edge_threshold", edge_threshold},
          {"min_contour", options.crawl.min_size},
          {"max_contour", options.crawl.max_size},
          {"accept_score", static_cast<int>(options.search.accept_score)},
          {"min_scale", options.search.min_scale},
          {"max_scale", options.search.max_scale},
          {"timeout_ms", options.search.timeout_us / 1000.0}};
}

class JsonReport : public FindReport {
 public:
  JsonReport(const FindContext& context, Report& report) : report_(report) {
    document_ = {{"orvandel", kVersion},
                 {"pattern", PatternObject(context)},
                 {"options", OptionsObject(context.options, context.facts.edge_threshold)},
                 {"results", Json::array()}};
  }

  void Add(const SceneOutcome& outcome) override {
    Json row = {
        {"scene", outcome.scene}, {"status", outcome.Status()}, {"found", outcome.IsFound()}};
    const bool has_pose = outcome.result && outcome.result->HasPose();
    const FindResult result = outcome.result.value_or(FindResult{});
    const auto put = [&](const char* name, double value) {
      row[name] = has_pose ? NumberOrNull(value) : Json();
    };
    const Similarity& pose = result.scene_from_pattern;
    put("x", pose.x);
    put("y", pose.y);
    put("angle_deg", Degrees(pose.angle));
    put("angle_rad", pose.angle);
    put("scale", pose.scale);
    put("score", result.score);
    row["time_ms"] = outcome.result ? NumberOrNull(result.time_ms) : Json();
    if (!outcome.error.empty()) row["error"] = outcome.error;
    document_["results"].push_back(row);
  }

  void End() override {
    // Paths that are not UTF-8 keep their readable characters.
    constexpr auto kReplaceInvalid = Json::error_handler_t::replace;
    report_.Print(document_.dump(2, ' ', false, kReplaceInvalid) + "\n");
  }

 private:
  Report& report_;
  Json document_;
};

}  // namespace

std::unique_ptr<FindReport> MakeFindJsonReport(const FindContext& context, Report& report) {
  return std::make_unique<JsonReport>(context, report);
}

}  // namespace orvandel::cli
