#pragma once

#include <string>
#include <vector>

#include "bench/side_by_side.h"

namespace orvandel::bench {

/// The comparisons of one run as Markdown: a row for each pair of competitors.
class RatioTable {
 public:
  /// One image or scene.
  struct Sample {
    TimePair times;
    double units = 1;  ///< of work: megapixels, or 1 where time is told per call
  };

  /// @param work     what was done, e.g. "SubCanny, threshold 16".
  /// @param against  whom it was compared with, e.g. "reference form".
  /// @param unit     of the times, e.g. "ms/megapixel".
  void AddTimes(const std::string& work, const std::string& against, const std::string& unit,
                const std::vector<Sample>& samples);

  /// Counts instead of times, one a scene.
  void AddCounts(const std::string& work, const std::string& against, const std::string& unit,
                 const std::vector<double>& ours, const std::vector<double>& theirs);

  std::string Markdown() const;

 private:
  std::vector<std::string> rows_;
};

}  // namespace orvandel::bench
