// Training on patterns of 200 x 200 pixels, with everything warm.

#include "bench/passes.h"
#include "bench/stages.h"
#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "evaluation/cluttered_scenes.h"
#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"

namespace orvandel::bench {
namespace {

/// The bracket among a few parts, differently each time: 200 x 200 pixels with much to learn.
const std::vector<NamedImage>& Patterns() {
  static const std::vector<NamedImage> patterns = [] {
    constexpr std::uint32_t kNumPatterns = 8;
    std::vector<NamedImage> drawn;
    for (std::uint32_t seed = 1; seed <= kNumPatterns; ++seed) {
      drawn.push_back(
          {"pattern " + std::to_string(seed), evaluation::Render({{200, 200}, 3, 1.5, seed})});
    }
    return drawn;
  }();
  return patterns;
}

class LibraryTraining {
 public:
  LibraryTraining() { search_.Initialize(); }
  double operator()(const NamedImage& pattern) {
    tImage* image = image_.Restored(*pattern.image);
    return SecondsOf([&] { search_.TrainIt(image); });
  }

 private:
  QRSIS search_;
  WorkingCopy image_;
};

class ReferenceTraining {
 public:
  double operator()(const NamedImage& pattern) {
    tImage* image = image_.Restored(*pattern.image);
    // The library keeps a copy of the pattern, which is part of its work.
    return SecondsOf([&] {
      copy_.reset(im_duplicate(image));
      test::ReferenceTrain(trained_, image, {}, test::kReferenceStages);
    });
  }

 private:
  test::ReferencePattern trained_;
  ImagePtr copy_;
  WorkingCopy image_;
};

}  // namespace

void RegisterTraining() {
  RegisterImagePasses("TrainIt/library", Patterns(), [] { return LibraryTraining(); });
  RegisterImagePasses("TrainIt/reference", Patterns(), [] { return ReferenceTraining(); });
}

void CompareTraining(RatioTable& table) {
  LibraryTraining ours;
  ReferenceTraining theirs;
  std::vector<RatioTable::Sample> samples;
  for (const NamedImage& pattern : Patterns()) {
    samples.push_back({TimeInTurn([&] { return ours(pattern); }, [&] { return theirs(pattern); })});
  }
  table.AddTimes("`TrainIt`, 200 x 200", "reference form", "ms", samples);
}

}  // namespace orvandel::bench
