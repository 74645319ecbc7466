#include <algorithm>
#include <cmath>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "base/rounding.h"
#include "cli/command.h"
#include "cli/draw_options.h"
#include "cli/help.h"
#include "cli/image_input.h"
#include "cli/output_file.h"
#include "cli/report.h"
#include "cli/tool_error.h"
#include "cli/version.h"
#include "evaluation/classic_pixels.h"
#include "evaluation/number_text.h"
#include "evaluation/pose_error.h"
#include "shape/edges/edge_detection.h"

namespace orvandel::cli {

using evaluation::Degrees;
using evaluation::Fixed;
using evaluation::ParseNumber;

namespace {

constexpr const char* kEdgesAbout =
    "Finds the edge points of a picture: places where the grey value changes fastest,\n"
    "to a fraction of a pixel.";
constexpr const char* kEdgesUsage = "orvandel edges [options] IMAGE";
constexpr const char* kEdgesFooter =
    R"(Per edge point, row of pixels by row of pixels:
  x, y       in pixels, x right and y down; the centre of the top-left pixel is
             (0, 0).
  direction  of the gradient, to the brighter side: degrees in (-180, 180], from
             x to y, so that positive ones turn clockwise on the screen; radians
             in JSON.
  strength   grey levels per pixel: 0.375 times the height of a sharp step.

The three outermost rows and columns of a picture hold none.

Examples:
  orvandel edges part.png
  orvandel edges part.png --csv --output points.csv
  orvandel edges part.png --min-strength 30 --draw edges.png --zoom 4)";

constexpr double kMostStrength = 100'000;  // beyond what 16 bits can have

struct EdgesArguments {
  std::string image;
  double min_strength = static_cast<double>(shape::edges::kUsualLeastStrength);
  bool all = false;
  bool csv = false;
  bool json = false;
  std::string output;
  DrawOptions draw;
  bool verbose = false;
};

using EdgePointSpan = std::span<const shape::edges::EdgePoint>;

double ParseStrength(const std::string& text) {
  const std::optional<double> strength = ParseNumber(text);
  if (strength && *strength >= 0 && *strength <= kMostStrength) return *strength;
  throw UsageError(
      fmt::format("--min-strength: '{}' is not a number from 0 to {:.0f}", text, kMostStrength));
}

std::string EdgeText(float value, int decimals) {
  return Fixed(static_cast<double>(value), decimals);
}

std::string DirectionText(const shape::edges::EdgePoint& point, int decimals) {
  return Fixed(Degrees(static_cast<double>(point.direction)), decimals);
}

void PrintEdgesCsv(EdgePointSpan points, Report& report) {
  report.Print("x,y,direction_deg,strength\n");
  for (const shape::edges::EdgePoint& point : points)
    report.Print(fmt::format("{},{},{},{}\n", EdgeText(point.x, 4), EdgeText(point.y, 4),
                             DirectionText(point, 3), EdgeText(point.strength, 3)));
}

void PrintEdgesJson(const EdgesArguments& arguments, const ImageFile& file, EdgePointSpan points,
                    Report& report) {
  nlohmann::ordered_json document = {{"orvandel", kVersion},
                                     {"image", file.path},
                                     {"width", file.image->width},
                                     {"height", file.image->height},
                                     {"min_strength", arguments.min_strength},
                                     {"points", nlohmann::ordered_json::array()}};
  for (const shape::edges::EdgePoint& point : points)
    document["points"].push_back({{"x", point.x},
                                  {"y", point.y},
                                  {"direction_rad", point.direction},
                                  {"strength", point.strength}});
  constexpr auto kReplaceInvalid = nlohmann::ordered_json::error_handler_t::replace;
  report.Print(document.dump(1, ' ', false, kReplaceInvalid) + "\n");
}

void PrintEdgesText(const EdgesArguments& arguments, EdgePointSpan points, Report& report) {
  constexpr std::size_t kFewRows = 20;
  const std::size_t num_rows = arguments.all ? points.size() : std::min(points.size(), kFewRows);
  report.Print(fmt::format("{} edge points of strength {:g} or more\n", points.size(),
                           arguments.min_strength));
  if (num_rows > 0)
    report.Print(
        fmt::format("\n{:>9}  {:>9}  {:>13}  {:>8}\n", "x", "y", "direction deg", "strength"));
  for (const shape::edges::EdgePoint& point : points.first(num_rows))
    report.Print(fmt::format("{:>9}  {:>9}  {:>13}  {:>8}\n", EdgeText(point.x, 3),
                             EdgeText(point.y, 3), DirectionText(point, 2),
                             EdgeText(point.strength, 2)));
  if (num_rows < points.size())
    report.Print(fmt::format("... and {} more (--all)\n", points.size() - num_rows));
}

/// A dash along the edge at each point.
void DrawEdges(const ImageFile& file, EdgePointSpan points, const DrawOptions& options) {
  constexpr Colour kEdgeColour{40, 230, 80};
  constexpr double kHalfDash = 0.4;  // pixels
  Canvas canvas = DarkenedCanvas(file, options);
  std::vector<Polyline> dashes;
  for (const shape::edges::EdgePoint& point : points) {
    const Point at = evaluation::ToClassicPixels(
        Point{static_cast<double>(point.x), static_cast<double>(point.y)});
    const auto [sine, cosine] = SinCosOf(static_cast<double>(point.direction));
    const Point along = kHalfDash * Point{-sine, cosine};
    dashes.push_back({{at - along, at + along}, false});
  }
  canvas.DrawStrokes(dashes, 1.0 + 0.1 * options.zoom, kEdgeColour);
  WriteFile(options.file, canvas.EncodePng());
}

int RunEdges(const EdgesArguments& arguments) {
  const ImageFile file = ReadImage(arguments.image);
  if (arguments.verbose) NoteConversion(file, Engine::kShapes);
  shape::edges::EdgeWorkspace workspace;
  shape::edges::EdgePoints points;
  const auto least_strength = static_cast<float>(arguments.min_strength);
  std::visit([&](const auto& view) { DetectEdgePoints(view, least_strength, workspace, points); },
             GreyView(file));
  if (arguments.draw.IsWanted()) DrawEdges(file, points.All(), arguments.draw);
  Report report(arguments.output);
  if (arguments.json)
    PrintEdgesJson(arguments, file, points.All(), report);
  else if (arguments.csv)
    PrintEdgesCsv(points.All(), report);
  else
    PrintEdgesText(arguments, points.All(), report);
  report.Finish();
  return kExitSuccess;
}

void AddEdgesOptions(CLI::App& app, EdgesArguments& arguments) {
  app.add_option("IMAGE", arguments.image, "The picture to look at.")->required();
  app.add_option_function<std::string>(
         "--min-strength",
         [&arguments](const std::string& text) { arguments.min_strength = ParseStrength(text); },
         "Least strength of an edge point, grey levels per pixel (12, a step of 32 levels). "
         "Pictures of 16 bits have levels of their own.")
      ->type_name("N");
  app.add_flag("--all", arguments.all, "List every point, not the first 20 only.")->group("Output");
  CLI::Option* const json =
      app.add_flag("--json", arguments.json, "Print one JSON object.")->group("Output");
  app.add_flag("--csv", arguments.csv, "Print CSV, a header and a line per edge point.")
      ->group("Output")
      ->excludes(json);
  app.add_option("--output", arguments.output, "Print into this file.")
      ->type_name("FILE")
      ->group("Output");
  AddDrawOptions(app, arguments.draw, "a dash along the edge at each point");
  app.add_flag("--verbose", arguments.verbose, "Say what was converted.")->group("Output");
}

}  // namespace

Command AddEdgesCommand(CLI::App& program) {
  const auto arguments = std::make_shared<EdgesArguments>();
  CLI::App& app = AddSubcommand(program, "edges", "Find the edge points of a picture.",
                                {kEdgesAbout, kEdgesUsage, kEdgesFooter});
  AddEdgesOptions(app, *arguments);
  return {&app, [arguments] { return RunEdges(*arguments); }};
}

}  // namespace orvandel::cli
