#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/draw_options.h"
#include "cli/find_report.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/overlay.h"
#include "cli/progress_bar.h"
#include "cli/segment_finder.h"
#include "cli/tool_error.h"
#include "evaluation/number_text.h"
#include "evaluation/paths.h"

namespace orvandel::cli {

using evaluation::Fixed;
using evaluation::PathFromUtf8;
using evaluation::Utf8FromPath;

namespace {

constexpr const char* kFindUsage =
    "orvandel find [options] PATTERN SCENE...\n"
    "       orvandel find [options] --pattern PATTERN [--pattern PATTERN]... SCENE...\n"
    "       orvandel find [options] --engine segments --knowledge NAME SCENE...";

constexpr const char* kFindAbout =
    "Learns a pattern from one picture and finds it in others, at any rotation and a\n"
    "range of sizes. Prints, per scene, whether it was found and where.";

constexpr const char* kFindFooter =
    R"(The result, a line per match:
  x, y       where the pattern's reference point lies in the scene, in pixels, x
             right and y down; the centre of the top-left pixel is (0, 0). The
             reference point is the centre of the pattern picture (segments: the
             mean of the pattern's contour points).
  angle      how far the pattern is turned, in (-180, 180] degrees and in
             radians; positive turns clockwise on the screen. A full circle has
             any angle; its standard deviation is then empty, null in JSON.
  scale      size in the scene over size in the pattern picture.
  score      how well the scene shows the pattern there: shapes 0 to 1, segments
             percent of the pattern's contour.
  coverage   share of the pattern's visible edge points that the scene shows.
  sd px      standard deviation of the position, as the picture's noise has it.
  status     found, or why not: not_found (nothing scores enough), timed_out,
             unusable_scene (the file). segments: below_accept_score (the best
             pose is printed all the same), no_contours or no_lines (nothing in
             the scene to match).
  time       of the search, without reading the file.

--csv and --json tell more of the shape engine's matches: clutter (edges inside
the outline that the pattern has not, per edge point), fit_error (RMS distance
of the edges in pixels), contrast (of the edges, over the learnt one), polarity,
share_outside (of the pattern, beyond the picture's border), the standard
deviations or the whole covariance of x, y, angle and scale, the times of the
stages in microseconds, and whether the time ran out.

In an overlay, the pattern's outline is drawn at each match, in orange where the
score is too low; the cross marks the reference point and its arrow the
pattern's x direction.

Exit status: 0 found in every scene, 1 not found in some, 2 a usage error or a
file that cannot be used.

Examples:
  orvandel find part.png scene.png
  orvandel find part.png shots/*.png --overlay found --csv > found.csv
  orvandel find part.png tray.png --max-matches 0          all in the picture
  orvandel find part.png scene.png --angle -10,10 --scale 1 --timeout 20ms
  orvandel find --pattern nut.png --pattern cam.png tray.png --overlay found
  orvandel find board.png shot.png --pattern-rect 60,40,240,220 --json
  orvandel find --engine segments --min-score 70 part.png scene.png)";

struct FindArguments {
  std::vector<std::string> images;
  std::vector<std::string> patterns;  // of --pattern
  std::string knowledge;
  std::optional<Rectangle> pattern_rect;
  SearchArguments search;
  bool csv = false;
  bool json = false;
  std::string output;
  std::string overlay;
  int zoom = 1;
  bool verbose = false;

  bool HasKnowledge() const { return !knowledge.empty(); }
  bool AllAreScenes() const { return HasKnowledge() || !patterns.empty(); }
  std::vector<std::string> Patterns() const {
    if (HasKnowledge()) return {KnowledgeFile(knowledge)};
    return patterns.empty() ? std::vector<std::string>{images.front()} : patterns;
  }
  std::vector<std::string> Scenes() const {
    return {images.begin() + (AllAreScenes() ? 0 : 1), images.end()};
  }
};

void CheckKnowledge(const FindArguments& arguments, Engine engine) {
  if (!arguments.HasKnowledge()) return;
  if (engine == Engine::kShapes)
    throw UsageError(
        "--knowledge belongs to the segment engine: add --engine segments, or give the pattern's "
        "picture, which the shape engine learns from each time");
  if (arguments.pattern_rect)
    throw UsageError(
        "--pattern-rect cuts the pattern out of a PATTERN picture and does not go with "
        "--knowledge; give it to `orvandel train`");
  if (!arguments.patterns.empty())
    throw UsageError("--knowledge and --pattern both name the pattern: give one of them");
}

void CheckArguments(const FindArguments& arguments, Engine engine) {
  CheckKnowledge(arguments, engine);
  if (!arguments.AllAreScenes() && arguments.images.empty())
    throw UsageError("PATTERN is missing: give the pattern picture and the pictures to look in");
  if (arguments.Scenes().empty())
    throw UsageError(arguments.AllAreScenes()
                         ? "SCENE is missing: give the pictures to look in"
                         : "SCENE is missing: give the pictures to look in after the pattern");
  if (arguments.zoom > 1 && arguments.overlay.empty())
    throw UsageError("--zoom enlarges overlays: give it along with --overlay DIR");
}

ImageFile ReadPattern(const std::string& path, const FindArguments& arguments, Engine engine) {
  ImageFile pattern = ReadImage(path);
  if (arguments.verbose) NoteConversion(pattern, engine);
  if (arguments.pattern_rect) return CutOut(pattern, *arguments.pattern_rect);
  return pattern;
}

std::unique_ptr<FindReport> MakeReport(const FindArguments& arguments, const FindContext& context,
                                       Report& report) {
  if (arguments.json) return MakeFindJsonReport(context, report);
  if (arguments.csv) return MakeFindCsvReport(context, report);
  return MakeFindTextReport(context, report);
}

std::string FileName(const std::string& path) {
  return Utf8FromPath(PathFromUtf8(path).filename());
}

std::string Stem(const std::string& path) {
  return Utf8FromPath(PathFromUtf8(path).stem());
}

std::string StagesText(const shape::StageTimes& us) {
  const auto ms = [](double microseconds) { return Fixed(microseconds / 1000, 2); };
  return fmt::format(
      "pyramid {}, response maps {}, coarse search {}, tracking {}, refinement {}, scoring {} ms",
      ms(us.pyramid), ms(us.response_maps), ms(us.coarse_search), ms(us.tracking),
      ms(us.refinement), ms(us.scoring));
}

// Looks in the scenes one after the other, for all patterns in each.
class FindRun {
 public:
  FindRun(const FindArguments& arguments, const SearchOptions& options)
      : arguments_(arguments), overlays_(arguments.overlay) {
    context_.options = options;
    context_.scenes = arguments.Scenes();
  }

  int Run() {
    for (const std::string& path : arguments_.Patterns())
      Learn(path);
    Report report(arguments_.output);
    const auto rows = MakeReport(arguments_, context_, report);
    ProgressBar progress(arguments_.verbose ? 0 : context_.scenes.size());  // notes show progress
    for (const std::string& scene : context_.scenes) {
      progress.Begin(FileName(scene));
      const std::vector<FindOutcome> outcomes = LookIn(scene);
      progress.Hide();
      for (const FindOutcome& outcome : outcomes) {
        Count(outcome);
        rows->Add(outcome);
      }
      progress.Advance();
    }
    rows->End();
    report.Finish();
    return exit_code_;
  }

 private:
  void Learn(const std::string& path) {
    finders_.push_back(MakePatternFinder(context_.options));
    finders_.back()->Train(ReadPattern(path, arguments_, context_.options.engine));
    context_.patterns.push_back({path, finders_.back()->Facts()});
    if (arguments_.verbose) PrintNote(path + ": " + Describe(context_.patterns.back().facts));
  }

  /// An outcome for each pattern; one for the whole scene when it cannot be used.
  std::vector<FindOutcome> LookIn(const std::string& scene) {
    ImageFile file;
    std::vector<FindOutcome> outcomes;
    try {
      file = ReadImage(scene);
      if (arguments_.verbose) NoteConversion(file, context_.options.engine);
      outcomes = Search(file);
    } catch (const FileError& error) {
      return {{scene, 0, std::nullopt, error.what()}};
    }
    if (!arguments_.overlay.empty()) DrawOverlay(file, outcomes);
    return outcomes;
  }

  std::vector<FindOutcome> Search(const ImageFile& scene) {
    std::vector<FindOutcome> outcomes;
    for (std::size_t i = 0; i < finders_.size(); ++i) {
      outcomes.push_back(
          {scene.path, i, finders_[i]->Search(scene, context_.options.shapes.max_matches), ""});
      const std::optional<shape::StageTimes>& times = outcomes.back().result->stage_times_us;
      if (arguments_.verbose && times) PrintNote(scene.path + ": " + StagesText(*times));
    }
    return outcomes;
  }

  void DrawOverlay(const ImageFile& scene, const std::vector<FindOutcome>& outcomes) {
    std::vector<DrawnFind> finds;
    for (const FindOutcome& outcome : outcomes) {
      const std::string& path = context_.patterns[outcome.pattern].path;
      finds.push_back({finders_[outcome.pattern].get(), &*outcome.result,
                       context_.HasSeveralPatterns() ? Stem(path) : ""});
    }
    CheckZoom(scene, arguments_.zoom);
    Canvas canvas(*scene.image, arguments_.zoom, /*brightness=*/1.0);
    DrawFinds(canvas, finds);
    const std::string path = overlays_.Write(Stem(scene.path), canvas);
    if (arguments_.verbose) PrintNote(fmt::format("{}: overlay in {}", scene.path, path));
  }

  // The worst of all scenes decides.
  void Count(const FindOutcome& outcome) {
    if (!outcome.result) {
      PrintError(outcome.error);
      exit_code_ = kExitError;
    } else if (!outcome.IsFound() && exit_code_ == kExitSuccess) {
      exit_code_ = kExitNotFound;
    }
  }

  const FindArguments& arguments_;
  FindContext context_;
  std::vector<std::unique_ptr<PatternFinder>> finders_;  // of the context's patterns
  OverlayFolder overlays_;
  int exit_code_ = kExitSuccess;
};

void AddOptions(CLI::App& app, FindArguments& arguments) {
  app.add_option(
         "PICTURES", arguments.images,
         "The pattern picture first, then the scenes to look in. BMP, PNG, JPEG, PGM and "
         "PPM are read; colour becomes grey, and more than 8 bits become 8 but for grey PNG "
         "with shapes.")
      ->option_text(" ");
  app.add_option("--pattern", arguments.patterns,
                 "A pattern picture; give the option again for each further one. All other "
                 "pictures are scenes then.")
      ->type_name("PATTERN")
      ->allow_extra_args(false);
  app.add_option("--knowledge", arguments.knowledge,
                 "Take the pattern that `orvandel train --save NAME` kept; all pictures are scenes "
                 "then (segment engine).")
      ->type_name("NAME");
  app.add_option_function<std::string>(
         "--pattern-rect",
         [&arguments](const std::string& text) { arguments.pattern_rect = ParseRectangle(text); },
         "Learn only this part of the pattern picture, in pixels.")
      ->type_name("X,Y,W,H");
  arguments.search.AddTo(app);
  CLI::Option* const json = app.add_flag("--json", arguments.json, "Print one JSON object.")
                                ->option_text(" ")
                                ->group("Output");
  app.add_flag("--csv", arguments.csv, "Print CSV, a header and a line per match.")
      ->option_text(" ")
      ->group("Output")
      ->excludes(json);
  app.add_option("--output", arguments.output, "Print into this file.")
      ->type_name("FILE")
      ->group("Output");
  app.add_option("--overlay", arguments.overlay,
                 "Write each scene in colour with the pattern drawn where it was found, as "
                 "DIR/SCENE.overlay.png.")
      ->type_name("DIR")
      ->group("Output");
  AddZoomOption(app, arguments.zoom);
  app.add_flag("--verbose", arguments.verbose,
               "Say what was learnt and converted, and the times of the stages.")
      ->group("Output");
}

}  // namespace

Command AddFindCommand(CLI::App& program) {
  const auto arguments = std::make_shared<FindArguments>();
  CLI::App& app = AddSubcommand(program, "find", "Find a pattern in pictures.",
                                {kFindAbout, kFindUsage, kFindFooter});
  AddOptions(app, *arguments);
  const auto run = [arguments] {
    const SearchOptions options = arguments->search.Resolve();
    CheckArguments(*arguments, options.engine);
    return FindRun(*arguments, options).Run();
  };
  return {&app, run};
}

}  // namespace orvandel::cli
