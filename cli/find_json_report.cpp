#include <cmath>
#include <cstddef>

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

void Put(const SegmentFacts& facts, Json& pattern) {
  pattern["contours"] = facts.num_contours;
  pattern["contour_points"] = facts.num_points;
  pattern["lines"] = facts.num_lines;
}

void Put(const ShapeFacts& facts, Json& pattern) {
  pattern["edge_points"] = NumEdgePoints(facts);
  pattern["smallest_scale"] = SmallestScale(facts);
}

Json PatternObject(const FindContext::Pattern& pattern) {
  const PatternFacts& facts = pattern.facts;
  Json object = {{"file", pattern.path},
                 {"width", facts.width},
                 {"height", facts.height},
                 {"reference_x", NumberOrNull(facts.reference.x)},
                 {"reference_y", NumberOrNull(facts.reference.y)}};
  std::visit([&object](const auto& learnt) { Put(learnt, object); }, facts.learnt);
  object["learning_ms"] = NumberOrNull(facts.learning_ms);
  return object;
}

Json ShapeOptionsObject(const SearchOptions& options) {
  const shape::FindOptions& shapes = options.shapes;
  return {{"min_score", shapes.min_score},
          {"min_scale", shapes.min_scale},
          {"max_scale", shapes.max_scale},
          {"angle_from_deg", Degrees(shapes.angle_start)},
          {"angle_extent_deg", Degrees(shapes.angle_extent)},
          {"max_matches", shapes.max_matches},
          {"max_overlap", shapes.max_overlap},
          {"polarity", PolarityWord(shapes.polarity)},
          {"timeout_ms", options.TimeoutMs()},
          {"threads", shapes.num_threads}};
}

Json SegmentOptionsObject(const SearchOptions& options, int edge_threshold) {
  return {{"edge_threshold", edge_threshold},
          {"min_contour", options.crawl.min_size},
          {"max_contour", options.crawl.max_size},
          {"accept_score", static_cast<int>(options.search.accept_score)},
          {"min_scale", options.search.min_scale},
          {"max_scale", options.search.max_scale},
          {"timeout_ms", options.TimeoutMs()}};
}

Json OptionsObject(const FindContext& context) {
  const auto* const learnt = std::get_if<SegmentFacts>(&context.patterns.front().facts.learnt);
  return learnt != nullptr ? SegmentOptionsObject(context.options, learnt->edge_threshold)
                           : ShapeOptionsObject(context.options);
}

/// The pose's fields of a match; null without one.
void PutPose(const FoundMatch* match, Json& row) {
  const Similarity pose = match ? match->scene_from_pattern : Similarity{};
  const auto put = [&](const char* name, double value) {
    row[name] = match ? NumberOrNull(value) : Json();
  };
  put("x", pose.x);
  put("y", pose.y);
  put("angle_deg", Degrees(pose.angle));
  put("angle_rad", pose.angle);
  put("scale", pose.scale);
  put("score", match ? match->score : 0);
}

Json CovarianceRows(const shape::Match& match) {
  Json rows = Json::array();
  for (std::size_t row = 0; row < 4; ++row) {
    rows.push_back(Json::array());
    for (std::size_t column = 0; column < 4; ++column)
      rows.back().push_back(NumberOrNull(match.covariance[4 * row + column]));
  }
  return rows;
}

Json MatchObject(const FoundMatch& match) {
  Json object;
  PutPose(&match, object);
  const shape::Match& details = *match.details;
  object["coverage"] = NumberOrNull(details.coverage);
  object["clutter"] = NumberOrNull(details.clutter);
  object["fit_error"] = NumberOrNull(details.fit_error);
  object["contrast"] = NumberOrNull(details.contrast);
  object["polarity"] = details.is_reversed ? "reversed" : "same";
  object["share_outside"] = NumberOrNull(details.share_outside);
  object["sd_x"] = NumberOrNull(DeviationOf(details, kX));
  object["sd_y"] = NumberOrNull(DeviationOf(details, kY));
  object["sd_angle_deg"] = NumberOrNull(Degrees(DeviationOf(details, kAngle)));
  object["sd_scale"] = NumberOrNull(DeviationOf(details, kScale));
  object["covariance"] = CovarianceRows(details);
  return object;
}

Json TimesObject(const shape::StageTimes& us) {
  return {{"pyramid", us.pyramid},
          {"response_maps", us.response_maps},
          {"coarse_search", us.coarse_search},
          {"tracking", us.tracking},
          {"refinement", us.refinement},
          {"scoring", us.scoring},
          {"total", us.total}};
}

class JsonReport : public FindReport {
 public:
  JsonReport(const FindContext& context, Report& report) : context_(context), report_(report) {
    document_ = {{"orvandel", kVersion}, {"engine", EngineWord(context.options.engine)}};
    if (context.HasSeveralPatterns()) {
      document_["patterns"] = Json::array();
      for (const FindContext::Pattern& pattern : context.patterns)
        document_["patterns"].push_back(PatternObject(pattern));
    } else {
      document_["pattern"] = PatternObject(context.patterns.front());
    }
    document_["options"] = OptionsObject(context);
    document_["results"] = Json::array();
  }

  void Add(const FindOutcome& outcome) override {
    Json row = {{"scene", outcome.scene}};
    if (context_.HasSeveralPatterns()) row["pattern"] = context_.PatternOf(outcome);
    row["status"] = outcome.Status();
    row["found"] = outcome.IsFound();
    const FindResult result = outcome.result.value_or(FindResult{});
    PutPose(result.matches.empty() ? nullptr : &result.matches.front(), row);
    row["time_ms"] = outcome.result ? NumberOrNull(result.time_ms) : Json();
    if (context_.options.engine == Engine::kShapes) PutShapes(result, row);
    if (!outcome.error.empty()) row["error"] = outcome.error;
    document_["results"].push_back(row);
  }

  void End() override {
    // Paths that are not UTF-8 keep their readable characters.
    constexpr auto kReplaceInvalid = Json::error_handler_t::replace;
    report_.Print(document_.dump(2, ' ', false, kReplaceInvalid) + "\n");
  }

 private:
  static void PutShapes(const FindResult& result, Json& row) {
    row["timed_out"] = result.timed_out;
    row["matches"] = Json::array();
    for (const FoundMatch& match : result.matches)
      row["matches"].push_back(MatchObject(match));
    row["times_us"] = result.stage_times_us ? TimesObject(*result.stage_times_us) : Json();
  }

  const FindContext& context_;
  Report& report_;
  Json document_;
};

}  // namespace

std::unique_ptr<FindReport> MakeFindJsonReport(const FindContext& context, Report& report) {
  return std::make_unique<JsonReport>(context, report);
}

}  // namespace orvandel::cli
