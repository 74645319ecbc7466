#pragma once

#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "bench/workload.h"
#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"

// Searches of one trained pattern, the library's way and the reference form's. Training is outside the
// clock, and done again only when the pattern changes.
namespace orvandel::bench {

class LibrarySearch {
 public:
  explicit LibrarySearch(const test::ReferenceParameters& parameters = {}) {
    search_.Initialize();
    search_.SetParams(parameters.edge_threshold, parameters.min_size, parameters.max_size,
                      static_cast<int>(parameters.accept_score));
    search_.SetMinMaxScale(parameters.min_scale, parameters.max_scale);
  }

  double operator()(const NamedImage& pattern, const NamedImage& scene) {
    if (trained_on_ != &pattern) search_.TrainIt(image_.Restored(*pattern.image));
    trained_on_ = &pattern;
    tImage* image = image_.Restored(*scene.image);
    return SecondsOf([&] { search_.LookForIt(image); });
  }

 private:
  QRSIS search_;
  const NamedImage* trained_on_ = nullptr;
  WorkingCopy image_;
};

class ReferenceSearch {
 public:
  explicit ReferenceSearch(const test::ReferenceParameters& parameters = {})
      : parameters_(parameters) {}

  double operator()(const NamedImage& pattern, const NamedImage& scene) {
    if (trained_on_ != &pattern)
      test::ReferenceTrain(trained_, image_.Restored(*pattern.image), parameters_,
                           test::kReferenceStages);
    trained_on_ = &pattern;
    tImage* image = image_.Restored(*scene.image);
    return SecondsOf([&] {
      test::ReferenceSearch(trained_, parameters_, test::kReferenceStages).LookForIt(image, [] {
        return false;
      });
    });
  }

 private:
  test::ReferenceParameters parameters_;
  test::ReferencePattern trained_;
  const NamedImage* trained_on_ = nullptr;
  WorkingCopy image_;
};

}  // namespace orvandel::bench
