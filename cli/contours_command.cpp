#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/canvas.h"
#include "cli/command.h"
#include "cli/contour_listing.h"
#include "cli/contour_set.h"
#include "cli/draw_options.h"
#include "cli/help.h"
#include "cli/library_file.h"
#include "cli/output_file.h"
#include "cli/report.h"
#include "cli/tool_error.h"
#include "evaluation/classic_pixels.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::Fixed;

namespace {

constexpr const char* kContoursAbout =
    "Shows the contours that the library sees in a picture, as training and search\n"
    "use them: sub-pixel edge points, smoothed, one a pixel, largest contour first.";
constexpr const char* kContoursUsage = "orvandel contours [options] IMAGE";
constexpr const char* kContoursFooter =
    R"(Per contour: number of points, whether it closes on itself, and the pixels it
spans, x right and y down; the centre of the top-left pixel is (0, 0). The files
of --save and --dump are the library's, which puts it at (0.5, 0.5).

Examples:
  orvandel contours part.png
  orvandel contours part.png --edge-threshold 30 --min-contour 40 --draw c.png
  orvandel contours part.png --draw seen.png --zoom 4     shows sub-pixel detail
  orvandel contours part.png --raw --csv --output part.csv)";

struct ContoursArguments {
  std::string image;
  CrawlOptions crawl;
  bool raw = false;
  bool all = false;
  bool csv = false;
  std::string output;
  std::string save_file;
  std::string dump_file;
  DrawOptions draw;
  bool verbose = false;
};

// What one contour spans, as it is printed.
struct Extent {
  Point least;
  Point most;
};

Extent ExtentOf(const std::vector<Point>& points) {
  Extent extent = {points.front(), points.front()};
  for (const Point& p : points) {
    extent.least = {std::min(extent.least.x, p.x), std::min(extent.least.y, p.y)};
    extent.most = {std::max(extent.most.x, p.x), std::max(extent.most.y, p.y)};
  }
  return {evaluation::FromClassicPixels(extent.least), evaluation::FromClassicPixels(extent.most)};
}

void PrintCsv(const std::vector<Polyline>& contours, Report& report) {
  report.Print("contour,points,closed,min_x,min_y,max_x,max_y\n");
  for (std::size_t i = 0; i < contours.size(); ++i) {
    const auto& [points, is_closed] = contours[i];
    const Extent e = ExtentOf(points);
    report.Print(fmt::format("{},{},{},{},{},{},{}\n", i, points.size(), is_closed ? 1 : 0,
                             Fixed(e.least.x, 3), Fixed(e.least.y, 3), Fixed(e.most.x, 3),
                             Fixed(e.most.y, 3)));
  }
}

void PrintTable(const std::vector<Polyline>& contours, std::size_t num_rows, Report& report) {
  report.Print(
      fmt::format("\n{:>7}  {:>7}  {:6}  {:>19}  {:>19}\n", "contour", "points", "", "x", "y"));
  for (std::size_t i = 0; i < num_rows; ++i) {
    const auto& [points, is_closed] = contours[i];
    const Extent e = ExtentOf(points);
    report.Print(fmt::format("{:>7}  {:>7}  {:6}  {:>8} - {:>8}  {:>8} - {:>8}\n", i, points.size(),
                             is_closed ? "closed" : "open", Fixed(e.least.x, 2), Fixed(e.most.x, 2),
                             Fixed(e.least.y, 2), Fixed(e.most.y, 2)));
  }
}

void PrintText(const ContourHandle& set, bool all, Report& report) {
  constexpr std::size_t kFewRows = 20;
  const std::vector<Polyline> contours = PolylinesOf(set);
  const std::size_t num_rows = all ? contours.size() : std::min(contours.size(), kFewRows);
  report.Print(fmt::format("{} contours of {} points, edge threshold {}\n", contours.size(),
                           ctd_point_count(set.get()), FieldsOf(set).edge_threshold));
  if (num_rows > 0) PrintTable(contours, num_rows, report);
  if (num_rows < contours.size())
    report.Print(fmt::format("... and {} more (--all)\n", contours.size() - num_rows));
}

void Draw(const ImageFile& file, const ContourHandle& set, const DrawOptions& options) {
  constexpr double kLineWidth = 1.3;
  Canvas canvas = DarkenedCanvas(file, options);
  int num_drawn = 0;
  for (const Polyline& contour : PolylinesOf(set))
    canvas.DrawPolyline(contour.points, /*closed=*/false, kLineWidth, DistinctColour(num_drawn++));
  WriteFile(options.file, canvas.EncodePng());
}

void WriteFiles(const ImageFile& file, const ContourHandle& set,
                const ContoursArguments& arguments) {
  if (!arguments.save_file.empty())
    WriteFile(arguments.save_file,
              BytesWritten([&set](const char* path) { return ctd_save(set.get(), path); }));
  if (!arguments.dump_file.empty()) WriteFile(arguments.dump_file, ListContours(set.get()));
  if (arguments.draw.IsWanted()) Draw(file, set, arguments.draw);
}

int Run(const ContoursArguments& arguments) {
  CheckOptions(arguments.crawl);
  const ImageFile file = ReadImage(arguments.image);
  if (arguments.verbose) NoteConversion(file);
  const ContourHandle set = FindContours(file, arguments.crawl, arguments.raw);
  WriteFiles(file, set, arguments);
  Report report(arguments.output);
  if (arguments.csv)
    PrintCsv(PolylinesOf(set), report);
  else
    PrintText(set, arguments.all, report);
  report.Finish();
  return kExitSuccess;
}

void AddOptions(CLI::App& app, ContoursArguments& arguments) {
  app.add_option("IMAGE", arguments.image, "The picture to look at.")->required();
  AddContourOptions(app, arguments.crawl);
  app.add_flag("--raw", arguments.raw,
               "The contours as they are followed: not smoothed, spaced or sorted.");
  app.add_flag("--all", arguments.all, "List every contour, not the first 20 only.")
      ->group("Output");
  app.add_flag("--csv", arguments.csv, "Print CSV, a header and a line per contour.")
      ->group("Output");
  app.add_option("--output", arguments.output, "Print into this file.")
      ->type_name("FILE")
      ->group("Output");
  AddDrawOptions(app, arguments.draw, "each contour in a colour of its own");
  app.add_option("--save", arguments.save_file,
                 "Write the binary contour file that `ctd_load` reads.")
      ->type_name("FILE")
      ->group("Output");
  app.add_option("--dump", arguments.dump_file, "Write every point as text: x, y, direction, flag.")
      ->type_name("FILE")
      ->group("Output");
  app.add_flag("--verbose", arguments.verbose, "Say what was converted.")->group("Output");
}

}  // namespace

Command AddContoursCommand(CLI::App& program) {
  const auto arguments = std::make_shared<ContoursArguments>();
  CLI::App& app = AddSubcommand(program, "contours", "Show the contours of a picture.",
                                {kContoursAbout, kContoursUsage, kContoursFooter});
  AddOptions(app, *arguments);
  return {&app, [arguments] { return Run(*arguments); }};
}

}  // namespace orvandel::cli
