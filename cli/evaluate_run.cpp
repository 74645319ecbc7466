#include "cli/evaluate_run.h"

#include <algorithm>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "cli/evaluation.h"
#include "cli/evaluation_report.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/overlay.h"
#include "cli/progress_bar.h"
#include "cli/report.h"
#include "cli/tool_error.h"

namespace orvandel::cli {
namespace {

struct LearntPattern {
  std::string path;
  PatternFinder finder;
  PatternFacts facts;

  LearntPattern(std::string pattern_path, const SearchOptions& options)
      : path(std::move(pattern_path)), finder(options) {
    finder.Train(ReadPicture(path));
    facts = finder.Facts();
  }
};

// Learns a pattern anew only where it is not that of the case before. More are not kept: each
// holds the edge data of its last scene, hundreds of megabytes for a large one.
class PatternCache {
 public:
  explicit PatternCache(const SearchOptions& options) : options_(options) {}

  LearntPattern& Get(const std::string& path) {
    if (!last_ || last_->path != path) {
      last_.reset();
      last_ = std::make_unique<LearntPattern>(path, options_);
    }
    return *last_;
  }

 private:
  SearchOptions options_;
  std::unique_ptr<LearntPattern> last_;
};

void DrawTruth(Canvas& canvas, const TestCase& test_case, const PatternFacts& facts) {
  constexpr Colour kTruthColour{70, 150, 255};
  const double w = facts.width;
  const double h = facts.height;
  for (const TrueInstance& instance : test_case.instances) {
    const Pose pose = PoseOf(instance, facts.width, facts.height);
    const Point outline[] = {pose * Point{0, 0}, pose * Point{w, 0}, pose * Point{w, h},
                             pose * Point{0, h}};
    canvas.DrawPolyline(outline, /*closed=*/true, 1.5, kTruthColour);
  }
}

class EvaluateRun {
 public:
  explicit EvaluateRun(const EvaluateArguments& arguments)
      : arguments_(arguments),
        patterns_(arguments.search),
        overlays_(arguments.overlay),
        report_(arguments.output) {
    for (const std::string& path : arguments.suites)
      suites_.push_back(ReadSuite(path));
  }

  int Run() {
    std::size_t num_cases = 0;
    for (const Suite& suite : suites_) {
      num_cases += suite.cases.size();
      name_width_ = std::max(name_width_, suite.name.size());
    }
    ProgressBar progress(num_cases);
    report_.Print(arguments_.csv ? SummaryCsvHead() : SummaryTableHead(name_width_));
    for (const Suite& suite : suites_)
      Run(suite, progress);
    if (suites_.size() > 1) Print(Summarize("total", results_));
    if (!arguments_.cases_file.empty()) WriteFile(arguments_.cases_file, CasesCsv(results_));
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
    Print(Summarize(suite.name, std::span(results_).subspan(first)));
  }

  CaseResult RunCase(const Suite& suite, const TestCase& test_case, ProgressBar& progress) {
    try {
      LearntPattern& pattern = patterns_.Get(test_case.pattern);
      Picture scene = ReadPicture(test_case.scene);
      const FindResult result = pattern.finder.Find(CopyOf(scene));
      if (!arguments_.overlay.empty()) DrawOverlay(suite, test_case, pattern, scene, result);
      return Judge(suite.name, test_case, result, pattern.facts.width, pattern.facts.height);
    } catch (const FileError& error) {
      progress.Hide();
      if (reported_.insert(error.what()).second) PrintError(error.what());
      return Unusable(suite, test_case);
    }
  }

  CaseResult Unusable(const Suite& suite, const TestCase& test_case) {
    exit_code_ = kExitError;
    CaseResult result;
    result.suite = suite.name;
    result.name = test_case.name;
    result.is_present = !test_case.instances.empty();
    return result;
  }

  void DrawOverlay(const Suite& suite, const TestCase& test_case, LearntPattern& pattern,
                   const Picture& scene, const FindResult& result) {
    Canvas canvas(*scene.image, /*zoom=*/1, /*brightness=*/1.0);
    DrawTruth(canvas, test_case, pattern.facts);
    DrawFindResult(canvas, pattern.finder.Contours(), result);
    overlays_.Write(suite.name + "." + test_case.name, canvas);
  }

  void Print(const SuiteSummary& summary) {
    report_.Print(arguments_.csv ? SummaryCsvRow(summary) : SummaryTableRow(summary, name_width_));
  }

  const EvaluateArguments& arguments_;
  std::vector<Suite> suites_;
  PatternCache patterns_;
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
