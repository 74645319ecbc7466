#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/help.h"
#include "cli/pattern_finder.h"
#include "cli/report.h"
#include "cli/tool_error.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::Fixed;

namespace {

constexpr const char* kTrainAbout =
    "Learns a pattern and keeps it for `orvandel find --knowledge NAME`.";
constexpr const char* kTrainUsage = "orvandel train [options] PATTERN --save NAME";
constexpr const char* kTrainFooter =
    R"(The file NAME_qrsi.bmp holds the pattern picture, nothing else: a search learns
it again with the options that it is given. So give `find` the same
--edge-threshold, --min-contour and --max-contour as here.

A pattern without a contour, or without a straight edge to start a search from,
is refused and nothing is written.

Examples:
  orvandel train part.png --save part
  orvandel find --knowledge part shots/*.png

  orvandel train board.png --pattern-rect 260,140,240,220 --save knowledge/chip)";

struct TrainArguments {
  std::string pattern;
  std::string name;
  std::optional<Rectangle> pattern_rect;
  CrawlOptions crawl;
  bool verbose = false;
};

ImageFile ReadPattern(const TrainArguments& arguments) {
  ImageFile pattern = ReadImage(arguments.pattern);
  if (arguments.verbose) NoteConversion(pattern);
  if (!arguments.pattern_rect) return pattern;
  return CutOut(pattern, *arguments.pattern_rect);
}

int Run(const TrainArguments& arguments) {
  CheckOptions(arguments.crawl);
  SearchOptions options;
  options.crawl = arguments.crawl;
  PatternFinder finder(options);
  finder.Train(ReadPattern(arguments));
  finder.Save(arguments.name);
  const PatternFacts facts = finder.Facts();
  const bool is_estimate = arguments.crawl.edge_threshold == kEstimateThreshold;
  Report report("");
  report.Print(fmt::format("pattern          {} x {} pixels\n", facts.width, facts.height));
  report.Print(
      fmt::format("contours         {}, of {} points\n", facts.num_contours, facts.num_points));
  report.Print(fmt::format("straight edges   {}\n", facts.num_lines));
  report.Print(fmt::format("reference point  ({}, {})\n", Fixed(facts.reference.x, 2),
                           Fixed(facts.reference.y, 2)));
  report.Print(fmt::format("edge threshold   {}{}\n", facts.edge_threshold,
                           is_estimate ? " (estimated)" : ""));
  report.Print(fmt::format("saved            {}\n", KnowledgeFile(arguments.name)));
  report.Finish();
  return kExitSuccess;
}

void AddOptions(CLI::App& app, TrainArguments& arguments) {
  app.add_option("PATTERN", arguments.pattern, "The pattern picture.")->required();
  app.add_option("--save", arguments.name, "Write NAME_qrsi.bmp; an older one is replaced.")
      ->type_name("NAME")
      ->required();
  app.add_option_function<std::string>(
         "--pattern-rect",
         [&arguments](const std::string& text) { arguments.pattern_rect = ParseRectangle(text); },
         "Learn only this part of the picture, in pixels.")
      ->type_name("X,Y,W,H");
  AddContourOptions(app, arguments.crawl);
  app.add_flag("--verbose", arguments.verbose, "Say what was converted.");
}

}  // namespace

Command AddTrainCommand(CLI::App& program) {
  const auto arguments = std::make_shared<TrainArguments>();
  CLI::App& app = AddSubcommand(program, "train", "Learn a pattern and keep it in a file.",
                                {kTrainAbout, kTrainUsage, kTrainFooter});
  AddOptions(app, *arguments);
  return {&app, [arguments] { return Run(*arguments); }};
}

}  // namespace orvandel::cli
