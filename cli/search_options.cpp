#include "cli/search_options.h"

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/duration.h"
#include "cli/tool_error.h"
#include "evaluation/csv.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::ParseInteger;
using evaluation::ParseNumber;
using evaluation::SplitAtCommas;

namespace {

constexpr int kMaxEdgeThreshold = 252;  // a diagonal step from black to white
constexpr int kMostPoints = 1'000'000'000;
constexpr const char* kGroup = "Search options";

int IntegerInRange(std::string_view option, std::string_view text, int least, int most,
                   std::string_view what_else = "") {
  const std::optional<int> value = ParseInteger(text);
  if (value && *value >= least && *value <= most) return *value;
  throw UsageError(fmt::format("{}: '{}' is not a whole number from {} to {}{}", option, text,
                               least, most, what_else));
}

int ParseEdgeThreshold(std::string_view text) {
  if (text == "auto") return kEstimateThreshold;
  return IntegerInRange("--edge-threshold", text, 0, kMaxEdgeThreshold,
                        ", nor auto for an estimate from the picture");
}

void ParseScaleRange(std::string_view text, SearchOptions& options) {
  const std::vector<std::string> fields = SplitAtCommas(text);
  const std::optional<double> least = ParseNumber(fields.front());
  const std::optional<double> most = ParseNumber(fields.back());
  if (fields.size() != 2 || !least || !most)
    throw UsageError(
        fmt::format("--scale: '{}' is not MIN,MAX, as in 0.5,2 for half to double size", text));
  if (!(*least > 0 && *least < *most))
    throw UsageError(fmt::format(
        "--scale: '{}' must go up from a MIN above 0; for one known size give some play, as in "
        "0.95,1.05",
        text));
  options.search.min_scale = *least;
  options.search.max_scale = *most;
}

CLI::Option* AddParsed(CLI::App& app, const char* name, const char* type, const char* description,
                       const std::function<void(const std::string&)>& parse) {
  return app.add_option_function<std::string>(name, parse, description)
      ->type_name(type)
      ->group(kGroup);
}

}  // namespace

void AddContourOptions(CLI::App& app, CrawlOptions& options) {
  AddParsed(
      app, "--edge-threshold", "N|auto",
      "Least gradient magnitude of an edge, 0 to 252 (16). A lower one sees fainter edges and "
      "more noise. auto estimates it from the picture.",
      [&options](const std::string& text) { options.edge_threshold = ParseEdgeThreshold(text); });
  AddParsed(app, "--min-contour", "N",
            "Fewest points of a contour, about one a pixel (10). A larger one ignores specks.",
            [&options](const std::string& text) {
              options.min_size = IntegerInRange("--min-contour", text, 1, kMostPoints);
            });
  AddParsed(app, "--max-contour", "N", "Most points of a contour (100000).",
            [&options](const std::string& text) {
              options.max_size = IntegerInRange("--max-contour", text, 1, kMostPoints);
            });
}

void AddSearchOptions(CLI::App& app, SearchOptions& options) {
  AddContourOptions(app, options.crawl);
  AddParsed(app, "--accept-score", "PERCENT",
            "Share of the pattern's contour that must be seen for it to count as found, 0 to 100 "
            "(80). The search ends at a pose that reaches it.",
            [&options](const std::string& text) {
              options.search.accept_score =
                  IntegerInRange("--accept-score", text, 0, 100, " (percent)");
            });
  AddParsed(
      app, "--scale", "MIN,MAX",
      "Sizes that are tried, scene over pattern (0.25,4). A narrow range is faster and surer.",
      [&options](const std::string& text) { ParseScaleRange(text, options); });
  AddParsed(
      app, "--timeout", "TIME", "Time for one scene, as in 500us, 20ms or 1.5s; 0 to 3.999s (1s).",
      [&options](const std::string& text) { options.search.timeout_us = ParseTimeoutUs(text); });
}

void CheckOptions(const CrawlOptions& options) {
  if (options.min_size <= options.max_size) return;
  throw UsageError(fmt::format("--min-contour {} is above --max-contour {}, so no contour is kept",
                               options.min_size, options.max_size));
}

}  // namespace orvandel::cli
