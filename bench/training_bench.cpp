// Training on patterns of 200 x 200 pixels, with everything warm.

#include "bench/passes.h"
#include "bench/stages.h"
#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "orvandel/classic/qrsis.h"
#include "tests/plain/cluttered_scenes.h"
#include "tests/plain/pattern_search.h"

namespace orvandel::bench {
namespace {

/// The bracket among a few parts, differently each time: 200 x 200 pixels with much to learn.
const std::vector<Picture>& Patterns() {
  static const std::vector<Picture> patterns = [] {
    constexpr std::uint32_t kNumPatterns = 8;
    std::vector<Picture> drawn;
    for (std::uint32_t seed = 1; seed <= kNumPatterns; ++seed) {
      drawn.push_back(
          {"pattern " + std::to_string(seed), plain::Render({{200, 200}, 3, 1.5, seed})});
    }
    return drawn;
  }();
  return patterns;
}

class LibraryTraining {
 public:
  LibraryTraining() { search_.Initialize(); }
  double operator()(const Picture& pattern) {
    tImage* image = image_.Restored(*pattern.image);
    return SecondsOf([&] { search_.TrainIt(image); });
  }

 private:
  QRSIS search_;
  WorkingCopy image_;
};

class PlainTraining {
 public:
  double operator()(const Picture& pattern) {
    tImage* image = image_.Restored(*pattern.image);
    // The library keeps a copy of the pattern, which is part of its work.
    return SecondsOf([&] {
      copy_.reset(im_duplicate(image));
      plain::Train(trained_, image, {});
    });
  }

 private:
  plain::Pattern trained_;
  ImagePtr copy_;
  WorkingCopy image_;
};

template <typename Run>
void Register(const char* name) {
  benchmark::RegisterBenchmark(name,
                               [](benchmark::State& state) {
                                 Run run;
                                 TimePicturePasses(state, Patterns(), run);
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

void RegisterTraining() {
  Register<LibraryTraining>("TrainIt/library");
  Register<PlainTraining>("TrainIt/plain");
}

void CompareTraining(RatioTable& table) {
  LibraryTraining ours;
  PlainTraining theirs;
  std::vector<RatioTable::Sample> samples;
  for (const Picture& pattern : Patterns()) {
    samples.push_back({TimeInTurn([&] { return ours(pattern); }, [&] { return theirs(pattern); })});
  }
  table.AddTimes("`TrainIt`, 200 x 200", "plain form", "ms", samples);
}

}  // namespace orvandel::bench
