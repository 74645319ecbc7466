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

A params.csv beside it, with the columns case and params, may tell the pattern's
symmetry, as in "symmetry=6;noise=1.2": 1 none, n n-fold, 0 a full circle. An
angle then counts modulo 360/n; a full circle's counts for nothing.

Per suite:
  found        cases whose best pose is at an instance, whatever its score (the
               shape engine tells only poses that score enough); of the cases
               whose scene holds the pattern. At an instance means: the corners
               of the pattern picture are off on average by less than 5 % of its
               diagonal; where params.csv tells a symmetry by less than 3 % of
               the diagonal at the instance's scale, at least 1.5 pixels, and
               beyond that the case's fit_max.
  accepted     of these, the score is enough
  misplaced    the score is enough at a wrong place
  false finds  the score is enough, of the scenes without the pattern
  corner, angle, scale   errors of the found cases: median and 90th percentile
  time         of all searches, without reading files
  instances    found: those with an accepted match of their own, of all; false:
               accepted matches at none. The shape engine is asked for as many
               matches as a case has instances, or as --max-matches says.

--csv tells the corner errors of the instances as well, and of how many found
cases the truth lies within the 95 % ellipsoid of the pose's covariance. --cases
tells the standard deviations, and the squared distance by the covariance
(squared_deviation) with the number of values that it counts.

Overlays show the pose found as `orvandel find` draws it, and the outline of the
true instances in blue.

Exit status: 0 done, 2 a usage error or a file that cannot be used.

Examples:
  orvandel evaluate data/rotation data/noise
  orvandel evaluate data/* --cases cases.csv --overlay looked-at
  orvandel evaluate data/crowd --max-matches 0 --scale 0.95,1.05
  orvandel evaluate data/scale --engine segments --min-score 70 --csv)";

void AddOptions(CLI::App& app, EvaluateArguments& arguments, SearchArguments& search) {
  app.add_option("SUITE", arguments.suites, "Folders with a manifest.csv.")
      ->required()
      ->option_text("...");
  search.AddTo(app);
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
  const auto search = std::make_shared<SearchArguments>();
  AddOptions(app, *arguments, *search);
  const auto run = [arguments, search] {
    arguments->search = search->Resolve();
    return Evaluate(*arguments);
  };
  return {&app, run};
}

}  // namespace orvandel::cli
