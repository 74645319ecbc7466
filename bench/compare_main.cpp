// Puts the two engines beside what OpenCV offers for the same job. See BENCHMARK.md; scripts/bench compare builds and
// runs it.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/comparison.h"
#include "bench/comparison_report.h"
#include "evaluation/number_text.h"
#include "evaluation/paths.h"

namespace orvandel::bench {
namespace {

constexpr char kUsage[] =
    "usage: orvandel_compare [OPTION...]\n"
    "  --suites DIR       look for the patterns of a suite, or of all suites of a folder; may be\n"
    "                     given several times. Without it, in scenes that the program draws\n"
    "  --finders A,B,...  of shape, segments, sift, orb, correlation and hough; all when not "
    "given\n"
    "  --limit SECONDS    for each finder, 120 when not given: what it does not come to is left "
    "out\n"
    "  --table FILE       write the tables to a file as well\n"
    "  --plots DIR        draw found and error against time into a folder\n"
    "  --help             show this\n";

struct Options {
  std::vector<std::string> suites;
  std::vector<std::string> finders;
  double limit_s = 120;
  std::string table;
  std::string plots;
};

std::vector<std::string> SplitAtCommas(std::string_view text) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(','), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

double SecondsFrom(const std::string& text) {
  const auto seconds = evaluation::ParseNumber(text);
  if (!seconds || !(*seconds > 0)) throw std::runtime_error("--limit takes seconds, above 0");
  return *seconds;
}

/// Throws std::runtime_error.
Options ReadOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    const bool is_known = name == "--suites" || name == "--finders" || name == "--limit" ||
                          name == "--table" || name == "--plots";
    if (!is_known) throw std::runtime_error("unknown option " + name);
    if (i + 1 == arguments.size()) throw std::runtime_error(name + " takes a value");
    const std::string& value = arguments[++i];
    if (name == "--suites") options.suites.push_back(value);
    if (name == "--finders") options.finders = SplitAtCommas(value);
    if (name == "--limit") options.limit_s = SecondsFrom(value);
    if (name == "--table") options.table = value;
    if (name == "--plots") options.plots = value;
  }
  return options;
}

/// In the order asked for. Throws std::runtime_error for one that is not there.
std::vector<Peer> ChosenPeers(const std::vector<std::string>& keys) {
  std::vector<Peer> all = AllPeers();
  if (keys.empty()) return all;
  std::vector<Peer> chosen;
  for (const std::string& key : keys) {
    const auto peer = std::find_if(all.begin(), all.end(),
                                   [&](const Peer& p) { return p.key == key && p.finder; });
    if (peer == all.end()) throw std::runtime_error("no finder named " + key + " in this build");
    chosen.push_back(std::move(*peer));
  }
  return chosen;
}

void Run(const Options& options) {
  std::vector<Peer> peers = ChosenPeers(options.finders);
  const std::vector<ComparedCase> cases =
      options.suites.empty() ? DrawnCases() : CasesOfSuites(options.suites);
  std::vector<PeerOutcomes> outcomes;
  for (Peer& peer : peers)
    outcomes.push_back(RunPeer(peer, cases, options.limit_s));
  const std::string tables = TablesOf(outcomes, cases);
  std::printf("\n%s", tables.c_str());
  if (!options.plots.empty()) PlotComparison(outcomes, cases, options.plots);
  if (options.table.empty()) return;
  std::ofstream file(evaluation::PathFromUtf8(options.table));
  file << tables;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + options.table);
}

}  // namespace
}  // namespace orvandel::bench

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (std::find(arguments.begin(), arguments.end(), "--help") != arguments.end()) {
    std::fputs(orvandel::bench::kUsage, stdout);
    return 0;
  }
  try {
    orvandel::bench::Run(orvandel::bench::ReadOptions(arguments));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvandel_compare: %s\n", error.what());
    return 2;
  }
  return 0;
}
