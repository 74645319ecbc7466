#pragma once

#include <cstddef>

#include "base/geometry.h"

namespace orvandel {

/// A pose, how well it fits, and the pair of segments that proposed it.
struct Hypothesis {
  Similarity scene_from_pattern = {0.0, 0.0, 0.0, 0.0};
  double score = 0.0;  ///< percent
  std::size_t pattern_segment = 0;
  std::size_t scene_segment = 0;
};

}  // namespace orvandel
