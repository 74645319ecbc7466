#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/contour_set.h"
#include "cli/draw_options.h"
#include "cli/help.h"
#include "cli/output_file.h"
#include "cli/report.h"
#include "cli/tool_error.h"
#include "evaluation/classic_pixels.h"
#include "evaluation/number_text.h"
#include "evaluation/pose_error.h"
#include "orvandel/classic/line_extracter.h"

namespace orvandel::cli {

using evaluation::Degrees;
using evaluation::Fixed;

namespace {

constexpr const char* kLinesAbout =
    "Shows the straight edges that the library sees in a picture. A search pairs the\n"
    "pattern's best ones, the first in this list, with those of the scene.";
constexpr const char* kLinesUsage = "orvandel lines [options] IMAGE";
constexpr const char* kLinesFooter =
    R"(Per straight edge, most points first:
  start, end   in pixels, x right and y down; the centre of the top-left pixel
               is (0, 0).
  angle        of the fitted line in (-90, 90] degrees; positive turns clockwise
               on the screen.
  length       from start to end in pixels; 0 for one that was joined where a
               closed contour begins and ends.
  points       contour points that the line was fitted to.
  error        their root mean square distance from the line in pixels.
  contour      number of the contour, as `orvandel contours` lists them.

Examples:
  orvandel lines part.png
  orvandel lines part.png --draw lines.png --zoom 2
  orvandel lines part.png --csv --output lines.csv)";

struct LinesArguments {
  std::string image;
  CrawlOptions crawl;
  bool csv = false;
  std::string output;
  DrawOptions draw;
  bool verbose = false;
};

Point StartOf(const CLineSegment& line) {
  return {line.start_x, line.start_y};
}

Point EndOf(const CLineSegment& line) {
  return {line.end_x, line.end_y};
}

// As it is printed.
Point StartPrinted(const CLineSegment& line) {
  return evaluation::FromClassicPixels(StartOf(line));
}

Point EndPrinted(const CLineSegment& line) {
  return evaluation::FromClassicPixels(EndOf(line));
}

std::string CsvRow(std::size_t i, const CLineSegment& line) {
  const Point start = StartPrinted(line);
  const Point end = EndPrinted(line);
  return fmt::format("{},{},{},{},{},{},{},{},{},{},{},{}\n", i, Fixed(start.x, 4),
                     Fixed(start.y, 4), Fixed(end.x, 4), Fixed(end.y, 4),
                     Fixed(Degrees(line.line_angle), 4), Fixed(Degrees(line.direction), 4),
                     Fixed(Degrees(line.gradient_direction), 4), Fixed(line.length, 4),
                     line.num_points, Fixed(line.fit_error, 5), line.contour_index);
}

void PrintCsv(const std::vector<CLineSegment>& lines, Report& report) {
  report.Print(
      "line,start_x,start_y,end_x,end_y,angle_deg,direction_deg,gradient_direction_deg,length,"
      "points,fit_error,contour\n");
  for (std::size_t i = 0; i < lines.size(); ++i)
    report.Print(CsvRow(i, lines[i]));
}

void PrintText(const std::vector<CLineSegment>& lines, Report& report) {
  report.Print(fmt::format("{} straight edges\n", lines.size()));
  if (lines.empty()) return;
  report.Print(fmt::format("\n{:>4}  {:>18}  {:>18}  {:>9}  {:>7}  {:>6}  {:>6}  {:>7}\n", "line",
                           "start", "end", "angle deg", "length", "points", "error", "contour"));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const CLineSegment& line = lines[i];
    const Point start = StartPrinted(line);
    const Point end = EndPrinted(line);
    report.Print(
        fmt::format("{:>4}  {:>8}, {:>8}  {:>8}, {:>8}  {:>9}  {:>7}  {:>6}  {:>6}  {:>7}\n", i,
                    Fixed(start.x, 2), Fixed(start.y, 2), Fixed(end.x, 2), Fixed(end.y, 2),
                    Fixed(Degrees(line.line_angle), 2), Fixed(line.length, 1), line.num_points,
                    Fixed(line.fit_error, 3), line.contour_index));
  }
}

void Draw(const ImageFile& file, const ContourHandle& set, const std::vector<CLineSegment>& lines,
          const DrawOptions& options) {
  constexpr Colour kContourColour{120, 120, 120};
  Canvas canvas = DarkenedCanvas(file, options);
  for (const Polyline& contour : PolylinesOf(set))
    canvas.DrawPolyline(contour.points, /*closed=*/false, 1.0, kContourColour);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Colour colour = DistinctColour(static_cast<int>(i));
    canvas.DrawLine(StartOf(lines[i]), EndOf(lines[i]), 2.0, colour);
    canvas.DrawDot(StartOf(lines[i]), 4.0, colour);
    canvas.DrawDot(EndOf(lines[i]), 4.0, colour);
  }
  WriteFile(options.file, canvas.EncodePng());
}

int Run(const LinesArguments& arguments) {
  CheckOptions(arguments.crawl);
  const ImageFile file = ReadImage(arguments.image);
  if (arguments.verbose) NoteConversion(file);
  const ContourHandle contours = FindContours(file, arguments.crawl, /*raw=*/false);
  CLineExtracter extracter;
  extracter.Extract(contours.get());
  const std::vector<CLineSegment>& lines = extracter.GetSegments();
  if (arguments.draw.IsWanted()) Draw(file, contours, lines, arguments.draw);
  Report report(arguments.output);
  if (arguments.csv)
    PrintCsv(lines, report);
  else
    PrintText(lines, report);
  report.Finish();
  return kExitSuccess;
}

void AddOptions(CLI::App& app, LinesArguments& arguments) {
  app.add_option("IMAGE", arguments.image, "The picture to look at.")->required();
  AddContourOptions(app, arguments.crawl);
  app.add_flag("--csv", arguments.csv,
               "Print CSV, a header and a line per straight edge, with directions as well.")
      ->group("Output");
  app.add_option("--output", arguments.output, "Print into this file.")
      ->type_name("FILE")
      ->group("Output");
  AddDrawOptions(app, arguments.draw, "each straight edge in a colour of its own");
  app.add_flag("--verbose", arguments.verbose, "Say what was converted.")->group("Output");
}

}  // namespace

Command AddLinesCommand(CLI::App& program) {
  const auto arguments = std::make_shared<LinesArguments>();
  CLI::App& app = AddSubcommand(program, "lines", "Show the straight edges of a picture.",
                                {kLinesAbout, kLinesUsage, kLinesFooter});
  AddOptions(app, *arguments);
  return {&app, [arguments] { return Run(*arguments); }};
}

}  // namespace orvandel::cli
