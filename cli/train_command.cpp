#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/draw_options.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/overlay.h"
#include "cli/report.h"
#include "cli/segment_finder.h"
#include "cli/shape_finder.h"
#include "cli/tool_error.h"
#include "cli/trained_pattern.h"
#include "evaluation/paths.h"

namespace orvandel::cli {

using evaluation::PathFromUtf8;
using evaluation::Utf8FromPath;

namespace {

constexpr const char* kTrainAbout =
    "Learns a pattern and tells what was learnt: whether a picture is good to be\n"
    "found by.";
constexpr const char* kTrainUsage =
    "orvandel train [options] PATTERN\n"
    "       orvandel train --engine segments [options] PATTERN --save NAME";
constexpr const char* kTrainFooter =
    R"(shapes: The pattern is learnt at many sizes; a line per size tells where it is
how large, and how many edge points it has there: all, those that poses are
tracked by, and those that every place is tried with. Below the smallest scale
there are no edges to find it by. The chance score is what pictures without the
pattern reach; the score of a match is set against it. In an overlay, the edge
points are green, and yellow those that every place is tried with.

segments: The file NAME_qrsi.bmp holds the pattern picture, nothing else: a
search learns it again with the options that it is given. So give `find` the
same --edge-threshold, --min-contour and --max-contour as here. A pattern
without a contour, or without a straight edge to start a search from, is refused
and nothing is written.

The reference point is the one whose place matches tell, in pixels of the
picture; the centre of its top-left pixel is (0, 0).

Examples:
  orvandel train part.png
  orvandel train part.png --overlay learnt --zoom 4
  orvandel train board.png --pattern-rect 260,140,240,220

  orvandel train --engine segments part.png --save part
  orvandel find --engine segments --knowledge part shots/*.png)";

struct TrainArguments {
  std::string pattern;
  std::string name;
  std::optional<Rectangle> pattern_rect;
  SearchArguments search;
  std::string overlay;
  int zoom = 1;
  bool verbose = false;
};

void CheckArguments(const TrainArguments& arguments, Engine engine) {
  if (engine == Engine::kShapes && !arguments.name.empty())
    throw UsageError(
        "--save keeps a pattern for the segment engine: add --engine segments, or leave it out; "
        "the shape engine learns from the picture each time");
  if (engine == Engine::kSegments && arguments.name.empty())
    throw UsageError("--save is required: the name that the segment engine's pattern is kept by");
  if (arguments.zoom > 1 && arguments.overlay.empty())
    throw UsageError("--zoom enlarges the overlay: give it along with --overlay DIR");
}

ImageFile ReadPattern(const TrainArguments& arguments, Engine engine) {
  ImageFile pattern = ReadImage(arguments.pattern);
  if (arguments.verbose) NoteConversion(pattern, engine);
  if (!arguments.pattern_rect) return pattern;
  return CutOut(pattern, *arguments.pattern_rect);
}

/// The picture, darkened, to draw what was learnt on.
std::optional<Canvas> CanvasFor(const TrainArguments& arguments, const ImageFile& pattern) {
  if (arguments.overlay.empty()) return std::nullopt;
  DrawOptions options;
  options.zoom = arguments.zoom;
  return DarkenedCanvas(pattern, options);
}

void WriteOverlay(const TrainArguments& arguments, const Canvas& canvas) {
  OverlayFolder folder(arguments.overlay);
  const std::string stem = Utf8FromPath(PathFromUtf8(arguments.pattern).stem());
  const std::string path = folder.Write(stem, canvas);
  if (arguments.verbose) PrintNote("overlay in " + path);
}

int RunShapes(const TrainArguments& arguments, const SearchOptions& options) {
  ImageFile pattern = ReadPattern(arguments, options.engine);
  std::optional<Canvas> canvas = CanvasFor(arguments, pattern);
  ShapeFinder finder(options);
  finder.Train(std::move(pattern));
  if (canvas) {
    DrawEdgePoints(*canvas, finder.Model());
    WriteOverlay(arguments, *canvas);
  }
  Report report("");
  PrintTrained(finder.Facts(), report);
  report.Finish();
  return kExitSuccess;
}

int RunSegments(const TrainArguments& arguments, const SearchOptions& options) {
  ImageFile pattern = ReadPattern(arguments, options.engine);
  std::optional<Canvas> canvas = CanvasFor(arguments, pattern);
  SegmentFinder finder(options);
  finder.Train(std::move(pattern));
  finder.Save(arguments.name);
  if (canvas) {
    DrawContours(*canvas, finder);
    WriteOverlay(arguments, *canvas);
  }
  const bool is_estimate = options.crawl.edge_threshold == kEstimateThreshold;
  Report report("");
  PrintTrained(finder.Facts(), is_estimate, report);
  report.Print(fmt::format("saved            {}\n", KnowledgeFile(arguments.name)));
  report.Finish();
  return kExitSuccess;
}

void AddOptions(CLI::App& app, TrainArguments& arguments) {
  app.add_option("PATTERN", arguments.pattern, "The pattern picture.")->required();
  app.add_option_function<std::string>(
         "--pattern-rect",
         [&arguments](const std::string& text) { arguments.pattern_rect = ParseRectangle(text); },
         "Learn only this part of the picture, in pixels.")
      ->type_name("X,Y,W,H");
  arguments.search.AddLearningTo(app);
  app.add_option("--save", arguments.name,
                 "Write NAME_qrsi.bmp (segment engine); an older one is replaced.")
      ->type_name("NAME")
      ->group("Output");
  app.add_option("--overlay", arguments.overlay,
                 "Write the darkened picture with what was learnt, as DIR/PATTERN.overlay.png.")
      ->type_name("DIR")
      ->group("Output");
  AddZoomOption(app, arguments.zoom);
  app.add_flag("--verbose", arguments.verbose, "Say what was converted.")->group("Output");
}

}  // namespace

Command AddTrainCommand(CLI::App& program) {
  const auto arguments = std::make_shared<TrainArguments>();
  CLI::App& app = AddSubcommand(program, "train", "Learn a pattern and tell what was learnt.",
                                {kTrainAbout, kTrainUsage, kTrainFooter});
  AddOptions(app, *arguments);
  const auto run = [arguments] {
    const SearchOptions options = arguments->search.Resolve();
    CheckArguments(*arguments, options.engine);
    return options.engine == Engine::kShapes ? RunShapes(*arguments, options)
                                             : RunSegments(*arguments, options);
  };
  return {&app, run};
}

}  // namespace orvandel::cli
