#pragma once

#include <memory>

#include "bench/workload.h"

namespace orvandel::bench {

#ifdef ORVANDEL_BENCH_OPENCV
inline constexpr bool kHasOpenCv = true;
#else
inline constexpr bool kHasOpenCv = false;
#endif

/// OpenCV's Canny on one thread: thresholds 50 and 100, 3 x 3 Sobel, L2 magnitude, into an output
/// that exists before the clock starts. Does nothing where the build found no OpenCV.
class OpenCvCanny {
 public:
  OpenCvCanny();

  /// Returns the seconds that it took.
  double operator()(const NamedImage& source);

 private:
  struct Outputs;
  std::shared_ptr<Outputs> outputs_;
};

}  // namespace orvandel::bench
