#include "cli/evaluate_run.h"

#include <algorithm>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/overlay.h"
#include "cli/pattern_finder.h"
#include "cli/progress_bar.h"
#include "cli/report.h"
#include "cli/tool_error.h"
#include "evaluation/case_result.h"
#include "evaluation/classic_pixels.h"
#include "evaluation/manifest.h"
#include "evaluation/suite_summary.h"
#include "evaluation/summary_table.h"

namespace orvandel::cli {

using evaluation::CaseResult;
using evaluation::PatternFrame;
using evaluation::Suite;
using evaluation::SuiteSummary;
using evaluation::TestCase;

namespace {

void DrawTruth(Canvas& canvas, const TestCase& test_case, const PatternFrame& frame) {
  constexpr Colour kTruthColour{70, 150, 255};
  const double right = frame.width / 2.0;
  const double bottom = frame.height / 2.0;
  for (const Similarity& instance : test_case.instances) {
    const SimilarityMap scene_from_pattern(evaluation::ToClassicPixels(instance));
    const Point outline[] = {
        scene_from_pattern * Point{-right, -bottom}, scene_from_pattern * Point{right, -bottom},
        scene_from_pattern * Point{right, bottom}, scene_from_pattern * Point{-right, bottom}};
    canvas.DrawPolyline(outline, /*closed=*/true, 1.5, kTruthColour);
  }
}

class EvaluateRun {
 public:
  explicit EvaluateRun(const EvaluateArguments& arguments)
      : arguments_(arguments),
        finder_(MakePatternFinder(arguments.search)),
        overlays_(arguments.overlay),
        report_(arguments.output) {
    for (const std::string& path : arguments.suites)
      suites_.push_back(evaluation::ReadSuite(path));
  }

  int Run() {
    std::size_t num_cases = 0;
    for (const Suite& suite : suites_) {
      num_cases += suite.cases.size();
      name_width_ = std::max(name_width_, suite.name.size());
    }
    ProgressBar progress(num_cases);
    report_.Print(arguments_.csv ? evaluation::SummaryCsvHead()
                                 : evaluation::SummaryTableHead(name_width_));
    for (const Suite& suite : suites_)
      Run(suite, progress);
    if (suites_.size() > 1) Print(evaluation::Summarize("total", results_));
    if (!arguments_.cases_file.empty())
      WriteFile(arguments_.cases_file, evaluation::CasesCsv(results_));
    report_.Finish();
    return exit_code_;
  }

 private:
  void Run(const Suite& suite, ProgressBar& progress) {
    const std::size_t first = results_.size();
    for (const TestCase& test_case : suite.cases) {
      progress.Begin(suite.name + " " + test_case.name);
      results_.push_back(RunCase(suite, test_case, progress));
      progress.Advance();
    }
    progress.Hide();
    Print(evaluation::Summarize(suite.name, std::span(results_).subspan(first)));
  }

  CaseResult RunCase(const Suite& suite, const TestCase& test_case, ProgressBar& progress) {
    try {
      Learn(test_case.pattern);
      const ImageFile scene = ReadImage(test_case.scene);
      const evaluation::Finding finding = finder_->FindSeveral(scene, NumWanted(test_case));
      if (!arguments_.overlay.empty()) DrawOverlay(suite, test_case, scene);
      return Judge(suite.name, test_case, finding, frame_);
    } catch (const FileError& error) {
      progress.Hide();
      if (reported_.insert(error.what()).second) PrintError(error.what());
      exit_code_ = kExitError;
      return Unusable(suite.name, test_case);
    }
  }

  // As many as there are, so that a table tells of them all; where there are none, one is enough to
  // be false.
  int NumWanted(const TestCase& test_case) const {
    if (arguments_.search.tells_max_matches) return arguments_.search.shapes.max_matches;
    return std::max(1, static_cast<int>(test_case.instances.size()));
  }

  // Learns a pattern only where it is not that of the case before.
  void Learn(const std::string& pattern) {
    if (learnt_ == pattern) return;
    learnt_.clear();
    frame_ = finder_->Learn(ReadImage(pattern));
    learnt_ = pattern;
  }

  void DrawOverlay(const Suite& suite, const TestCase& test_case, const ImageFile& scene) {
    Canvas canvas(*scene.image, /*zoom=*/1, /*brightness=*/1.0);
    DrawTruth(canvas, test_case, frame_);
    const DrawnFind find = {finder_.get(), &finder_->LastResult(), ""};
    DrawFinds(canvas, std::span(&find, 1));
    overlays_.Write(suite.name + "." + test_case.name, canvas);
  }

  void Print(const SuiteSummary& summary) {
    report_.Print(arguments_.csv ? evaluation::SummaryCsvRow(summary)
                                 : evaluation::SummaryTableRow(summary, name_width_));
  }

  const EvaluateArguments& arguments_;
  std::vector<Suite> suites_;
  std::unique_ptr<PatternFinder> finder_;
  std::string learnt_;  // path of the pattern; empty for none
  PatternFrame frame_;
  OverlayFolder overlays_;
  Report report_;
  std::size_t name_width_ = 5;
  std::vector<CaseResult> results_;
  std::set<std::string> reported_;  // errors; many cases may share a bad pattern
  int exit_code_ = kExitSuccess;
};

}  // namespace

int Evaluate(const EvaluateArguments& arguments) {
  return EvaluateRun(arguments).Run();
}

}  // namespace orvandel::cli
