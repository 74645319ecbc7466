#include "bench/side_by_side.h"

#include <vector>

#include "evaluation/statistics.h"

namespace orvandel::bench {

TimePair TimeInTurn(const TimedRun& ours, const TimedRun& theirs) {
  constexpr std::size_t kFewest = 7;
  constexpr std::size_t kMost = 51;
  constexpr double kEnough_s = 0.3;
  ours();
  theirs();
  std::vector<double> ours_s;
  std::vector<double> theirs_s;
  double total_s = 0;
  while (ours_s.size() < kFewest || (ours_s.size() < kMost && total_s < kEnough_s)) {
    ours_s.push_back(ours());
    theirs_s.push_back(theirs());
    total_s += ours_s.back() + theirs_s.back();
  }
  return {evaluation::Median(ours_s), evaluation::Median(theirs_s)};
}

}  // namespace orvandel::bench
