#include "cli/search_options.h"

#include <array>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "base/rounding.h"
#include "cli/duration.h"
#include "cli/tool_error.h"
#include "evaluation/csv.h"
#include "evaluation/number_text.h"
#include "evaluation/pose_error.h"

namespace orvandel::cli {

using evaluation::ParseInteger;
using evaluation::ParseNumber;
using evaluation::Radians;
using evaluation::SplitAtCommas;

namespace {

constexpr int kMaxEdgeThreshold = 252;  // a diagonal step from black to white
constexpr int kMostPoints = 1'000'000'000;
constexpr int kMostMatches = 10'000;
constexpr int kMostThreads = 256;
constexpr double kLeastScale = 0.01;
constexpr double kMostScale = 100;
constexpr double kFarthestAngle = 720;  // degrees

constexpr const char* kContourGroup = "Contours (segment engine)";
constexpr const char* kSearchGroup = "Search (both engines)";
constexpr const char* kShapesGroup = "Search (shape engine)";

constexpr std::array<std::pair<const char*, shape::Polarity>, 4> kPolarities = {
    {{"same", shape::Polarity::kSame},
     {"reversed", shape::Polarity::kReversed},
     {"either", shape::Polarity::kEither},
     {"mixed", shape::Polarity::kMixed}}};

int IntegerInRange(std::string_view option, std::string_view text, int least, int most,
                   std::string_view what_else = "") {
  const std::optional<int> value = ParseInteger(text);
  if (value && *value >= least && *value <= most) return *value;
  throw UsageError(fmt::format("{}: '{}' is not a whole number from {} to {}{}", option, text,
                               least, most, what_else));
}

double Share(std::string_view option, std::string_view text) {
  const std::optional<double> value = ParseNumber(text);
  if (value && *value >= 0 && *value <= 1) return *value;
  throw UsageError(fmt::format("{}: '{}' is not a number from 0 to 1", option, text));
}

int ParseEdgeThreshold(std::string_view text) {
  if (text == "auto") return kEstimateThreshold;
  return IntegerInRange("--edge-threshold", text, 0, kMaxEdgeThreshold,
                        ", nor auto for an estimate from the picture");
}

struct Range {
  double least = 0;
  double most = 0;
};

/// "LEAST,MOST"; nothing for another text.
std::optional<Range> ParseRange(std::string_view text) {
  const std::vector<std::string> fields = SplitAtCommas(text);
  const std::optional<double> least = ParseNumber(fields.front());
  const std::optional<double> most = ParseNumber(fields.back());
  if (fields.size() != 2 || !least || !most) return std::nullopt;
  return Range{*least, *most};
}

/// The same, or one value for both.
std::optional<Range> ParseRangeOrValue(std::string_view text) {
  if (const std::optional<double> value = ParseNumber(text)) return Range{*value, *value};
  return ParseRange(text);
}

void ParseSegmentScale(std::string_view text, SegmentSearchOptions& options) {
  const std::optional<Range> scale = ParseRange(text);
  if (!scale)
    throw UsageError(
        fmt::format("--scale: '{}' is not MIN,MAX, as in 0.5,2 for half to double size", text));
  if (!(scale->least > 0 && scale->least < scale->most))
    throw UsageError(fmt::format(
        "--scale: '{}' must go up from a MIN above 0; for one known size give some play, as in "
        "0.95,1.05",
        text));
  options.min_scale = scale->least;
  options.max_scale = scale->most;
}

void ParseShapeScale(std::string_view text, shape::FindOptions& options) {
  const std::optional<Range> scale = ParseRangeOrValue(text);
  if (!scale)
    throw UsageError(fmt::format(
        "--scale: '{}' is neither MIN,MAX, as in 0.5,2 for half to double size, nor one size, as "
        "in 1",
        text));
  if (!(scale->least >= kLeastScale && scale->least <= scale->most && scale->most <= kMostScale))
    throw UsageError(fmt::format(
        "--scale: '{}' must go up from a MIN above 0, within {:g} to {:g}; the smaller one comes "
        "first",
        text, kLeastScale, kMostScale));
  options.min_scale = scale->least;
  options.max_scale = scale->most;
}

void ParseAngle(std::string_view text, shape::FindOptions& options) {
  const std::optional<Range> degrees = ParseRangeOrValue(text);
  if (!degrees)
    throw UsageError(fmt::format(
        "--angle: '{}' is neither FROM,TO in degrees, as in -10,10, nor one angle, as in 90",
        text));
  const double extent = degrees->most - degrees->least;
  if (!(extent >= 0 && extent <= 360 && degrees->least >= -kFarthestAngle &&
        degrees->most <= kFarthestAngle))
    throw UsageError(fmt::format(
        "--angle: '{}' must go up by 360 degrees at most, within -{:g} to {:g}; across 0 it is "
        "-10,10 and not 350,10",
        text, kFarthestAngle, kFarthestAngle));
  options.angle_start = Radians(degrees->least);
  options.angle_extent = extent == 360 ? kTwoPi : Radians(extent);
}

shape::Polarity ParsePolarity(std::string_view text) {
  for (const auto& [word, polarity] : kPolarities) {
    if (text == word) return polarity;
  }
  throw UsageError(
      fmt::format("--polarity: '{}' is none of same, reversed, either and mixed", text));
}

double ShapeScore(std::string_view text) {
  const std::optional<double> value = ParseNumber(text);
  if (value && *value > 1 && *value <= 100)
    throw UsageError(fmt::format(
        "--min-score: scores go from 0 to 1 here, not to 100: write {:g}, not {} (the segment "
        "engine's go to 100)",
        *value / 100, text));
  return Share("--min-score", text);
}

CLI::Option* AddParsed(CLI::App& app, const char* name, const char* type, const char* description,
                       const char* group, const std::function<void(const std::string&)>& parse) {
  return app.add_option_function<std::string>(name, parse, description)
      ->type_name(type)
      ->group(group);
}

Engine ParseEngine(const std::string& text) {
  for (const Engine engine : {Engine::kShapes, Engine::kSegments}) {
    if (text == EngineWord(engine)) return engine;
  }
  throw UsageError(fmt::format("--engine: '{}' is neither shapes nor segments", text));
}

}  // namespace

const char* PolarityWord(shape::Polarity polarity) {
  for (const auto& [word, value] : kPolarities) {
    if (value == polarity) return word;
  }
  return "unknown";
}

std::vector<const CLI::Option*> AddContourOptions(CLI::App& app, CrawlOptions& options) {
  return {
      AddParsed(app, "--edge-threshold", "N|auto",
                "Least gradient magnitude of an edge, 0 to 252 (16). A lower one sees fainter "
                "edges and more noise. auto estimates it from the picture.",
                kContourGroup,
                [&options](const std::string& text) {
                  options.edge_threshold = ParseEdgeThreshold(text);
                }),
      AddParsed(app, "--min-contour", "N",
                "Fewest points of a contour, about one a pixel (10). A larger one ignores specks.",
                kContourGroup,
                [&options](const std::string& text) {
                  options.min_size = IntegerInRange("--min-contour", text, 1, kMostPoints);
                }),
      AddParsed(app, "--max-contour", "N", "Most points of a contour (100000).", kContourGroup,
                [&options](const std::string& text) {
                  options.max_size = IntegerInRange("--max-contour", text, 1, kMostPoints);
                })};
}

void SearchArguments::AddLearningTo(CLI::App& app) {
  AddEngine(app);
  of_segments_ = AddContourOptions(app, options_.crawl);
}

void SearchArguments::AddTo(CLI::App& app) {
  AddEngine(app);
  AddShared(app);
  AddOfShapes(app);
  of_segments_ = AddContourOptions(app, options_.crawl);
}

void SearchArguments::AddEngine(CLI::App& app) {
  AddParsed(app, "--engine", "shapes|segments",
            "What looks for the pattern: shapes (the default) takes any pattern with edges, round "
            "ones too, and is far more exact; segments needs straight edges.",
            "Engine", [this](const std::string& text) { options_.engine = ParseEngine(text); });
}

void SearchArguments::AddShared(CLI::App& app) {
  AddParsed(app, "--scale", "MIN,MAX",
            "Sizes that are tried, scene over pattern (0.5,2; segments: 0.25,4). A narrow range is "
            "faster and surer; one number alone fixes the size (shapes).",
            kSearchGroup, [this](const std::string& text) { scale_ = text; });
  AddParsed(app, "--min-score,--accept-score", "SCORE",
            "Score that counts as found. shapes: 0 to 1 (0.36). segments: percent of the "
            "pattern's contour that must be seen, 0 to 100 (80); its search ends there.",
            kSearchGroup, [this](const std::string& text) { min_score_ = text; });
  AddParsed(app, "--timeout", "TIME",
            "Time for one scene, as in 500us, 20ms or 1.5s. shapes: to 1000s, 0 for no limit (the "
            "default). segments: 0 to 3.999s (1s).",
            kSearchGroup, [this](const std::string& text) { timeout_ = text; });
}

void SearchArguments::AddOfShapes(CLI::App& app) {
  shape::FindOptions& shapes = options_.shapes;
  of_shapes_ = {
      AddParsed(app, "--angle", "FROM,TO",
                "Rotations that are tried, degrees clockwise on the screen (all). One number alone "
                "fixes it.",
                kShapesGroup, [&shapes](const std::string& text) { ParseAngle(text, shapes); }),
      AddParsed(
          app, "--max-matches", "N",
          "Most matches in a scene, the best ones (1); 0 for all that score enough.", kShapesGroup,
          [this](const std::string& text) {
            options_.shapes.max_matches = IntegerInRange("--max-matches", text, 0, kMostMatches);
            options_.tells_max_matches = true;
          }),
      AddParsed(app, "--max-overlap", "SHARE",
                "Share of the smaller one's area that two matches may have in common, 0 to 1 "
                "(0.5).",
                kShapesGroup,
                [&shapes](const std::string& text) {
                  shapes.max_overlap = Share("--max-overlap", text);
                }),
      AddParsed(app, "--polarity", "WORD",
                "Bright and dark as learnt: same; exchanged all over: reversed; one of these: "
                "either; each stretch of the outline on its own: mixed (the default).",
                kShapesGroup,
                [&shapes](const std::string& text) { shapes.polarity = ParsePolarity(text); }),
      AddParsed(app, "--threads", "N",
                "Threads for one scene (1). The results are the same with any number.",
                kShapesGroup, [&shapes](const std::string& text) {
                  shapes.num_threads = IntegerInRange("--threads", text, 1, kMostThreads);
                })};
}

SearchOptions SearchArguments::Resolve() const {
  SearchOptions options = options_;
  const bool is_shapes = options.engine == Engine::kShapes;
  for (const CLI::Option* option : is_shapes ? of_segments_ : of_shapes_) {
    if (option->count() == 0) continue;
    throw UsageError(
        is_shapes ? fmt::format("{} belongs to the segment engine, and the shape engine finds its "
                                "own threshold for edges: leave it out, or add --engine segments",
                                option->get_name())
                  : fmt::format("{} belongs to the shape engine, and the segment engine does not "
                                "know it: leave it out, or leave out --engine segments",
                                option->get_name()));
  }
  CheckOptions(options.crawl);
  if (scale_ && is_shapes) ParseShapeScale(*scale_, options.shapes);
  if (scale_ && !is_shapes) ParseSegmentScale(*scale_, options.search);
  if (min_score_ && is_shapes) options.shapes.min_score = ShapeScore(*min_score_);
  if (min_score_ && !is_shapes)
    options.search.accept_score = IntegerInRange("--min-score", *min_score_, 0, 100, " (percent)");
  if (timeout_ && is_shapes)
    options.shapes.time_budget_us = ParseTimeoutUs(*timeout_, kMaxShapeTimeoutUs);
  if (timeout_ && !is_shapes)
    options.search.timeout_us = ParseTimeoutUs(*timeout_, kMaxSegmentTimeoutUs);
  return options;
}

void CheckOptions(const CrawlOptions& options) {
  if (options.min_size <= options.max_size) return;
  throw UsageError(fmt::format("--min-contour {} is above --max-contour {}, so no contour is kept",
                               options.min_size, options.max_size));
}

}  // namespace orvandel::cli
