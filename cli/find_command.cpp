#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/find_report.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/overlay.h"
#include "cli/progress_bar.h"
#include "cli/tool_error.h"
#include "evaluation/paths.h"

namespace orvandel::cli {

using evaluation::PathFromUtf8;
using evaluation::Utf8FromPath;

namespace {

constexpr const char* kFindUsage =
    "orvandel find [options] PATTERN SCENE...\n"
    "       orvandel find [options] --knowledge NAME SCENE...";

constexpr const char* kFindAbout =
    "Learns a pattern from one picture and finds it in others, at any rotation and a\n"
    "range of sizes. Prints, per scene, whether it was found and where.";

constexpr const char* kFindFooter =
    R"(The result:
  x, y       where the pattern's reference point lies in the scene, in pixels, x
             right and y down. The reference point is the mean of the pattern's
             contour points. The centre of the top-left pixel is (0.5, 0.5).
  angle      how far the pattern is turned, in (-180, 180] degrees and in
             radians; positive turns clockwise on the screen.
  scale      size in the scene over size in the pattern picture.
  score      percent of the pattern's contour that the scene shows at this pose.
  status     found, or why not: below_accept_score (the best pose is printed all
             the same), no_contours or no_lines (nothing in the scene to match),
             timed_out (no pose was tried), unusable_scene (the file).
  time       of the search, without reading the file.

In an overlay, the pattern's contours are green where it was found and orange
where the score is too low; the cross marks the reference point and its arrow
the pattern's x direction.

Exit status: 0 found in every scene, 1 not found in some, 2 a usage error or a
file that cannot be used.

Examples:
  orvandel find part.png scene.png
  orvandel find part.png shots/*.png --overlay found --csv > found.csv
  orvandel find board.png shot.png --pattern-rect 60,40,240,220 --scale 0.9,1.1
  orvandel find --knowledge part shots/*.png --json --timeout 20ms)";

struct FindArguments {
  std::vector<std::string> images;
  std::string knowledge;
  std::optional<Rectangle> pattern_rect;
  SearchOptions search;
  bool csv = false;
  bool json = false;
  std::string output;
  std::string overlay;
  bool verbose = false;

  bool HasKnowledge() const { return !knowledge.empty(); }
  std::string PatternPath() const {
    return HasKnowledge() ? KnowledgeFile(knowledge) : images.front();
  }
  std::vector<std::string> Scenes() const {
    return {images.begin() + (HasKnowledge() ? 0 : 1), images.end()};
  }
};

void CheckArguments(const FindArguments& arguments) {
  CheckOptions(arguments.search.crawl);
  if (arguments.HasKnowledge() && arguments.pattern_rect)
    throw UsageError(
        "--pattern-rect cuts the pattern out of a PATTERN picture and does not go with "
        "--knowledge; give it to `orvandel train`");
  if (!arguments.HasKnowledge() && arguments.images.empty())
    throw UsageError("PATTERN is missing: give the pattern picture, or --knowledge NAME");
  if (arguments.Scenes().empty())
    throw UsageError(arguments.HasKnowledge()
                         ? "SCENE is missing: give the pictures to look in"
                         : "SCENE is missing: give the pictures to look in after the pattern");
}

void Learn(const FindArguments& arguments, PatternFinder& finder) {
  if (arguments.HasKnowledge()) return finder.Load(arguments.knowledge);
  ImageFile pattern = ReadImage(arguments.PatternPath());
  if (arguments.verbose) NoteConversion(pattern);
  if (arguments.pattern_rect) pattern = CutOut(pattern, *arguments.pattern_rect);
  finder.Train(std::move(pattern));
}

std::unique_ptr<FindReport> MakeReport(const FindArguments& arguments, const FindContext& context,
                                       Report& report) {
  if (arguments.json) return MakeFindJsonReport(context, report);
  if (arguments.csv) return MakeFindCsvReport(report);
  return MakeFindTextReport(context, report);
}

std::string FileName(const std::string& path) {
  return Utf8FromPath(PathFromUtf8(path).filename());
}

// Looks in the scenes one after the other.
class FindRun {
 public:
  explicit FindRun(const FindArguments& arguments)
      : arguments_(arguments), finder_(arguments.search), overlays_(arguments.overlay) {}

  int Run() {
    Learn(arguments_, finder_);
    const FindContext context = {arguments_.PatternPath(), finder_.Facts(), arguments_.search,
                                 arguments_.Scenes()};
    if (arguments_.verbose) PrintNote(context.pattern + ": " + Describe(context.facts));
    Report report(arguments_.output);
    const auto rows = MakeReport(arguments_, context, report);
    ProgressBar progress(arguments_.verbose ? 0 : context.scenes.size());  // notes show progress
    for (const std::string& scene : context.scenes) {
      progress.Begin(FileName(scene));
      const SceneOutcome outcome = LookIn(scene);
      progress.Hide();
      Count(outcome);
      rows->Add(outcome);
      progress.Advance();
    }
    rows->End();
    report.Finish();
    return exit_code_;
  }

 private:
  SceneOutcome LookIn(const std::string& scene) {
    ImageFile file;
    try {
      file = ReadImage(scene);
    } catch (const FileError& error) {
      return {scene, std::nullopt, error.what()};
    }
    if (arguments_.verbose) NoteConversion(file);
    if (arguments_.overlay.empty()) return {scene, finder_.Find(std::move(file.image)), ""};
    const FindResult result = finder_.Find(CopyOf(file));
    DrawOverlay(file, result);
    return {scene, result, ""};
  }

  void DrawOverlay(const ImageFile& scene, const FindResult& result) {
    Canvas canvas(*scene.image, /*zoom=*/1, /*brightness=*/1.0);
    DrawFindResult(canvas, finder_, result);
    const std::string stem = Utf8FromPath(PathFromUtf8(scene.path).stem());
    const std::string path = overlays_.Write(stem, canvas);
    if (arguments_.verbose) PrintNote(fmt::format("{}: overlay in {}", scene.path, path));
  }

  // The worst of all scenes decides.
  void Count(const SceneOutcome& outcome) {
    if (!outcome.result) {
      PrintError(outcome.error);
      exit_code_ = kExitError;
    } else if (!outcome.IsFound() && exit_code_ == kExitSuccess) {
      exit_code_ = kExitNotFound;
    }
  }

  const FindArguments& arguments_;
  PatternFinder finder_;
  OverlayFolder overlays_;
  int exit_code_ = kExitSuccess;
};

void AddOptions(CLI::App& app, FindArguments& arguments) {
  app.add_option("PICTURES", arguments.images,
                 "The pattern picture first, then the scenes to look in. BMP, PNG, JPEG, PGM and "
                 "PPM are read; colour becomes grey.")
      ->option_text(" ");
  app.add_option("--knowledge", arguments.knowledge,
                 "Take the pattern that `orvandel train --save NAME` kept; all pictures are scenes "
                 "then.")
      ->type_name("NAME");
  app.add_option_function<std::string>(
         "--pattern-rect",
         [&arguments](const std::string& text) { arguments.pattern_rect = ParseRectangle(text); },
         "Learn only this part of the pattern picture, in pixels.")
      ->type_name("X,Y,W,H");
  AddSearchOptions(app, arguments.search);
  CLI::Option* const json = app.add_flag("--json", arguments.json, "Print one JSON object.")
                                ->option_text(" ")
                                ->group("Output");
  app.add_flag("--csv", arguments.csv, "Print CSV, a header and a line per scene.")
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
  app.add_flag("--verbose", arguments.verbose, "Say what was learnt and what was converted.")
      ->group("Output");
}

}  // namespace

Command AddFindCommand(CLI::App& program) {
  const auto arguments = std::make_shared<FindArguments>();
  CLI::App& app = AddSubcommand(program, "find", "Find a pattern in pictures.",
                                {kFindAbout, kFindUsage, kFindFooter});
  AddOptions(app, *arguments);
  const auto run = [arguments] {
    CheckArguments(*arguments);
    return FindRun(*arguments).Run();
  };
  return {&app, run};
}

}  // namespace orvandel::cli
