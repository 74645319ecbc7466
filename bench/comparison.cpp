#include "bench/comparison.h"

#include <chrono>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "bench/stopwatch.h"
#include "evaluation/case_result.h"
#include "evaluation/file_error.h"
#include "evaluation/uniform_random.h"

namespace orvandel::bench {
namespace {

using evaluation::Finding;
using evaluation::PatternFrame;

/// By chance, so that those left out where the time ends are not all of the last suites; but some searches for a pattern
/// follow each other, for the sake of finders that take long to learn.
std::vector<std::size_t> OrderOf(const std::vector<ComparedCase>& cases) {
  constexpr int kTogether = 8;
  evaluation::UniformRandom random(5);
  std::vector<std::size_t> shuffled(cases.size());
  for (std::size_t i = 0; i < shuffled.size(); ++i) {
    shuffled[i] = i;
    std::swap(shuffled[i],
              shuffled[static_cast<std::size_t>(random.Integer(0, static_cast<int>(i)))]);
  }
  std::map<std::string, int> seen;
  std::map<std::pair<int, std::string>, std::vector<std::size_t>> groups;
  for (const std::size_t index : shuffled) {
    const std::string& pattern = cases[index].pattern->path;
    groups[{seen[pattern]++ / kTogether, pattern}].push_back(index);
  }
  std::vector<std::size_t> order;
  for (const auto& [key, indices] : groups)
    order.insert(order.end(), indices.begin(), indices.end());
  return order;
}

Outcome Judged(const Finding& finding, const PatternFrame& frame, const ComparedCase& compared) {
  const evaluation::CaseResult judged =
      evaluation::Judge(compared.suite, compared.truth, finding, frame);
  Outcome outcome;
  outcome.time_ms = finding.time_ms;
  outcome.is_right = judged.IsAccepted() && judged.is_found;
  outcome.is_wrong = judged.IsAccepted() && !judged.is_found;
  if (outcome.is_right) outcome.corner_px = judged.error->corner_px;
  return outcome;
}

/// A line that is overwritten as it changes.
class Progress {
 public:
  Progress(std::string label, std::size_t num_steps)
      : label_(std::move(label)), num_steps_(num_steps) {}
  void Show(std::size_t num_done) const {
    std::fprintf(stderr, "\r%s: %zu of %zu searches ", label_.c_str(), num_done, num_steps_);
  }
  void End(double seconds) const { std::fprintf(stderr, "in %.0f s\n", seconds); }

 private:
  std::string label_;
  std::size_t num_steps_;
};

class PeerRun {
 public:
  PeerRun(Peer& peer, const std::vector<ComparedCase>& cases) : peer_(peer), cases_(cases) {
    outcomes_.name = peer.name;
  }

  void Search(std::size_t index) {
    const ComparedCase& compared = cases_[index];
    Learn(compared);
    Outcome outcome;
    if (frame_) outcome = Judged(peer_.finder->Find(*compared.scene), *frame_, compared);
    outcome.case_index = index;
    outcomes_.outcomes.push_back(outcome);
  }

  PeerOutcomes Take() { return std::move(outcomes_); }

 private:
  void Learn(const ComparedCase& compared) {
    if (learnt_ == compared.pattern.get()) return;
    learnt_ = compared.pattern.get();
    frame_.reset();
    try {
      const double seconds = SecondsOf([&] { frame_ = peer_.finder->Learn(*compared.pattern); });
      outcomes_.learning_ms.push_back(1e3 * seconds);
    } catch (const evaluation::FileError&) {
      // Nothing in it that this peer could find: told by what it does not find.
    }
  }

  Peer& peer_;
  const std::vector<ComparedCase>& cases_;
  PeerOutcomes outcomes_;
  const evaluation::ImageFile* learnt_ = nullptr;
  std::optional<PatternFrame> frame_;
};

}  // namespace

PeerOutcomes RunPeer(Peer& peer, const std::vector<ComparedCase>& cases, double limit_s) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  const auto seconds = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
  const Progress progress(peer.name, cases.size());
  PeerRun run(peer, cases);
  std::size_t num_done = 0;
  for (const std::size_t index : OrderOf(cases)) {
    progress.Show(num_done);
    if (seconds() > limit_s) break;
    run.Search(index);
    ++num_done;
  }
  progress.Show(num_done);
  progress.End(seconds());
  return run.Take();
}

}  // namespace orvandel::bench
