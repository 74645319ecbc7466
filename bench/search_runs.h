#pragma once

#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "bench/workload.h"
#include "orvandel/classic/qrsis.h"
#include "tests/plain/pattern_search.h"

// Searches of one trained pattern, the library's way and the reference form's. Training is outside the
// clock, and done again only when the pattern changes.
namespace orvandel::bench {

class LibrarySearch {
 public:
  explicit LibrarySearch(const plain::SearchOptions& options = {}) {
    search_.Initialize();
    search_.SetParams(options.crawl.edge_threshold, options.crawl.min_size, options.crawl.max_size,
                      static_cast<int>(options.search.accept_score));
    search_.SetMinMaxScale(options.search.min_scale, options.search.max_scale);
    search_.SetTimeOutValue(options.search.timeout_us);
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
  explicit ReferenceSearch(const plain::SearchOptions& options = {}) : options_(options) {}

  double operator()(const NamedImage& pattern, const NamedImage& scene) {
    if (trained_on_ != &pattern)
      plain::Train(trained_, image_.Restored(*pattern.image), options_.crawl);
    trained_on_ = &pattern;
    tImage* image = image_.Restored(*scene.image);
    return SecondsOf([&] { plain::Find(trained_, scene_.get(), image, options_); });
  }

 private:
  plain::SearchOptions options_;
  plain::Pattern trained_;
  ContourHandle scene_{ctd_create()};
  const NamedImage* trained_on_ = nullptr;
  WorkingCopy image_;
};

}  // namespace orvandel::bench
