#include <memory>

#include <CLI/CLI.hpp>

#include "cli/command.h"
#include "cli/evaluate_run.h"
#include "cli/help.h"

namespace orvandel::cli {
namespace {

constexpr const char* kEvaluateAbout =
    "Searches the scenes of suites whose true poses are known, and prints per suite\n"
    "how often and how exactly the pattern was found.";
constexpr const char* kEvaluateUsage = "orvandel evaluate [options] SUITE...";
constexpr const char* kEvaluateFooter =
    R"(A SUITE is a folder with a manifest.csv, or that file. It has the columns
  case,pattern,scene,instance,cx,cy,angle_deg,scale
and a row per instance of a case; instance -1 and no pose where the scene does
not hold the pattern. Paths are relative to the folder. (cx, cy) is the scene
position of the pattern picture's centre, the centre of the top-left pixel being
(0, 0); a positive angle turns clockwise on the screen.

Per suite:
  found        cases whose best pose is at an instance, whatever its score: the
               corners of the pattern picture are off by less than 5 % of its
               diagonal on average; of the cases whose scene holds the pattern
  accepted     of these, the score reaches the accept score
  misplaced    the score reaches it at a wrong place
  false finds  the score reaches it, of the scenes without the pattern
  corner, angle, scale   errors of the found cases: median and 90th percentile
  time         of all searches, without reading files

Overlays show the pose found as `orvandel find` draws it, and the outline of the
true instances in blue.

Exit status: 0 done, 2 a usage error or a file that cannot be used.

Examples:
  orvandel evaluate data/rotation data/noise
  orvandel evaluate data/* --cases cases.csv --overlay looked-at
  orvandel evaluate data/scale --scale 0.4,2.2 --accept-score 70 --csv)";

void AddOptions(CLI::App& app, EvaluateArguments& arguments) {
  app.add_option("SUITE", arguments.suites, "Folders with a manifest.csv.")
      ->required()
      ->option_text("...");
  AddSearchOptions(app, arguments.search);
  app.add_flag("--csv", arguments.csv, "Print CSV, a header and a line per suite.")
      ->group("Output");
  app.add_option("--output", arguments.output, "Print into this file.")
      ->type_name("FILE")
      ->group("Output");
  app.add_option("--cases", arguments.cases_file, "Write a CSV file with a line per case.")
      ->type_name("FILE")
      ->group("Output");
  app.add_option("--overlay", arguments.overlay,
                 "Write a picture of each case with the pose found and the true ones, as "
                 "DIR/SUITE.CASE.overlay.png.")
      ->type_name("DIR")
      ->group("Output");
}

}  // namespace

Command AddEvaluateCommand(CLI::App& program) {
  const auto arguments = std::make_shared<EvaluateArguments>();
  CLI::App& app = AddSubcommand(program, "evaluate", "Measure finds against suites of known poses.",
                                {kEvaluateAbout, kEvaluateUsage, kEvaluateFooter});
  AddOptions(app, *arguments);
  const auto run = [arguments] {
    CheckOptions(arguments->search.crawl);
    return Evaluate(*arguments);
  };
  return {&app, run};
}

}  // namespace orvandel::cli
