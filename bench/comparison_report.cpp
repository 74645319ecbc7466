#include "bench/comparison_report.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "bench/svg_plot.h"
#include "evaluation/number_text.h"
#include "evaluation/paths.h"
#include "evaluation/statistics.h"

namespace orvandel::bench {
namespace {

using evaluation::Fixed;
using evaluation::Median;
using evaluation::Percentile;

/// What outcomes come to.
struct Totals {
  int num_searched = 0;
  int num_present = 0;  ///< of them, the scene holds the pattern
  int num_right = 0;
  int num_wrong = 0;
  std::vector<double> corner_px;
  std::vector<double> time_ms;

  double SharePercent() const { return 100.0 * num_right / num_present; }
};

/// @param suite  empty for all
Totals TotalsOf(const PeerOutcomes& peer, const std::vector<ComparedCase>& cases,
                const std::string& suite) {
  Totals totals;
  for (const Outcome& outcome : peer.outcomes) {
    const ComparedCase& compared = cases[outcome.case_index];
    if (!suite.empty() && compared.suite != suite) continue;
    ++totals.num_searched;
    totals.num_present += compared.truth.instances.empty() ? 0 : 1;
    totals.num_right += outcome.is_right ? 1 : 0;
    totals.num_wrong += outcome.is_wrong ? 1 : 0;
    if (outcome.is_right) totals.corner_px.push_back(outcome.corner_px);
    totals.time_ms.push_back(outcome.time_ms);
  }
  return totals;
}

std::vector<std::string> SuitesOf(const std::vector<ComparedCase>& cases) {
  std::vector<std::string> suites;
  for (const ComparedCase& compared : cases) {
    if (suites.empty() || suites.back() != compared.suite) suites.push_back(compared.suite);
  }
  return suites;
}

/// Three significant digits.
std::string Number(double value) {
  return Fixed(value, value < 0.1 ? 4 : value < 1 ? 3 : value < 10 ? 2 : value < 100 ? 1 : 0);
}

std::string TableOfPeers(const std::vector<PeerOutcomes>& peers,
                         const std::vector<ComparedCase>& cases) {
  std::string text =
      "| Finder | Searches | Found | Wrong | Corner error, px: median / p90 | Time, ms: median / "
      "p99 "
      "| Learning, ms: median |\n|---|---|---|---|---|---|---|\n";
  for (const PeerOutcomes& peer : peers) {
    const Totals totals = TotalsOf(peer, cases, {});
    text += "| " + peer.name + " | " + std::to_string(totals.num_searched) + " | " +
            std::to_string(totals.num_right) + " of " + std::to_string(totals.num_present) + " | " +
            std::to_string(totals.num_wrong) + " | " + Number(Median(totals.corner_px)) + " / " +
            Number(Percentile(totals.corner_px, 90)) + " | " + Number(Median(totals.time_ms)) +
            " / " + Number(Percentile(totals.time_ms, 99)) + " | " +
            Number(Median(peer.learning_ms)) + " |\n";
  }
  return text;
}

/// Found of present, and wrong ones after a plus sign.
std::string TableOfSuites(const std::vector<PeerOutcomes>& peers,
                          const std::vector<ComparedCase>& cases) {
  std::string text = "| Suite |";
  std::string line = "|---|";
  for (const PeerOutcomes& peer : peers) {
    text += " " + peer.name + " |";
    line += "---|";
  }
  text += "\n" + line + "\n";
  for (const std::string& suite : SuitesOf(cases)) {
    text += "| " + suite + " |";
    for (const PeerOutcomes& peer : peers) {
      const Totals totals = TotalsOf(peer, cases, suite);
      text += ' ';
      text += std::to_string(totals.num_right) + " of " + std::to_string(totals.num_present);
      if (totals.num_wrong > 0) text += ", " + std::to_string(totals.num_wrong) + " wrong";
      text += " |";
    }
    text += "\n";
  }
  return text;
}

void Write(const Plot& plot, const std::filesystem::path& path) {
  std::ofstream file(path);
  file << SvgOf(plot);
  file.close();
  if (!file) throw std::runtime_error("cannot write " + evaluation::Utf8FromPath(path));
}

}  // namespace

std::string TablesOf(const std::vector<PeerOutcomes>& peers,
                     const std::vector<ComparedCase>& cases) {
  return TableOfPeers(peers, cases) + "\n" + TableOfSuites(peers, cases);
}

void PlotComparison(const std::vector<PeerOutcomes>& peers, const std::vector<ComparedCase>& cases,
                    const std::string& folder) {
  Plot found = {
      "Found against time, a dot a suite", "median time, ms", "found, %", {}, true, false};
  Plot error = {"Error against time, a dot a suite",
                "median time, ms",
                "median error of the corners, pixels",
                {},
                true,
                true};
  for (const PeerOutcomes& peer : peers) {
    PlotSeries found_by_peer = {peer.name, {}};
    PlotSeries error_of_peer = {peer.name, {}};
    for (const std::string& suite : SuitesOf(cases)) {
      const Totals totals = TotalsOf(peer, cases, suite);
      if (totals.num_present == 0) continue;
      const double time_ms = Median(totals.time_ms);
      found_by_peer.points.push_back({time_ms, totals.SharePercent()});
      if (totals.num_right > 0) error_of_peer.points.push_back({time_ms, Median(totals.corner_px)});
    }
    found.series.push_back(found_by_peer);
    error.series.push_back(error_of_peer);
  }
  const std::filesystem::path path = evaluation::PathFromUtf8(folder);
  std::filesystem::create_directories(path);
  Write(found, path / "compared-found.svg");
  Write(error, path / "compared-error.svg");
}

}  // namespace orvandel::bench
