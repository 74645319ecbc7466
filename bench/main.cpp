// The benchmark program. See BENCHMARK.md; scripts/bench builds and runs it.

#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/stages.h"
#include "evaluation/paths.h"

namespace orvandel::bench {
namespace {

constexpr char kUsage[] =
    "usage: orvandel_bench [OPTION...] [--benchmark_...=...]\n"
    "  --pictures DIR  measure stages on the PNG images of a folder, not on rendered ones\n"
    "  --suites DIR    measure searches on the suites of a folder, not on rendered scenes\n"
    "  --table FILE    compare side by side, and write the table of ratios to a file as well\n"
    "  --plots DIR     measure how cost grows, and draw the plots into a folder\n"
    "  --no-stages     leave out the benchmarks of the stages by themselves\n";

struct Options {
  std::string image_folder;
  std::string suites;
  std::string table;
  std::string plots;
  bool stages = true;
};

std::string* TextOption(Options& options, const char* name) {
  if (std::strcmp(name, "--pictures") == 0) return &options.image_folder;
  if (std::strcmp(name, "--suites") == 0) return &options.suites;
  if (std::strcmp(name, "--table") == 0) return &options.table;
  if (std::strcmp(name, "--plots") == 0) return &options.plots;
  return nullptr;
}

/// Reads what Google Benchmark has left of the command line. Throws std::runtime_error.
Options ReadOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--no-stages") == 0) {
      options.stages = false;
      continue;
    }
    std::string* text = TextOption(options, argv[i]);
    if (text == nullptr) throw std::runtime_error(std::string("unknown option ") + argv[i]);
    if (i + 1 == argc) throw std::runtime_error(std::string(argv[i]) + " takes a value");
    *text = argv[++i];
  }
  return options;
}

Workload Load(const Options& options) {
  Workload workload;
  workload.images =
      options.image_folder.empty() ? RenderedImages() : ReadImages(options.image_folder);
  workload.searches = options.suites.empty() ? RenderedSearches() : ReadSearches(options.suites);
  return workload;
}

void RunStages(const Workload& workload) {
  RegisterSubCanny(workload);
  RegisterEdgePoints(workload);
  RegisterFindShapes(workload);
  RegisterImageToSegments(workload);
  RegisterTraining();
  RegisterSearch(workload);
  RegisterCoarseSearch(workload);
  benchmark::RunSpecifiedBenchmarks();
}

void WriteTable(const Workload& workload, const std::string& path) {
  RatioTable table;
  CompareSubCanny(workload, table);
  CompareEdgePoints(workload, table);
  CompareImageToSegments(workload, table);
  CompareTraining(table);
  CompareSearch(workload, table);
  CompareCoarseSearch(workload, table);
  CompareMemory(workload, table);

  const std::string text = table.Markdown();
  std::printf("\n%s", text.c_str());
  std::ofstream file(evaluation::PathFromUtf8(path));
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

void Run(const Options& options) {
  if (options.stages || !options.table.empty()) {
    const Workload workload = Load(options);
    if (options.stages) RunStages(workload);
    if (!options.table.empty()) WriteTable(workload, options.table);
  }
  if (!options.plots.empty()) PlotGrowth(options.plots);
}

}  // namespace
}  // namespace orvandel::bench

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--help") != 0) continue;
    std::fputs(orvandel::bench::kUsage, stdout);
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  try {
    orvandel::bench::Run(orvandel::bench::ReadOptions(argc, argv));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvandel_bench: %s\n", error.what());
    return 2;
  }
  benchmark::Shutdown();
  return 0;
}
