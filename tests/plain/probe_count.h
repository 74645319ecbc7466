#pragma once

#include <cstdint>

namespace orvandel::plain {

/// What scoring has cost. A probe is one look at a pixel of the scene's edge record, whether there
/// is an edge point or not.
struct ProbeCount {
  std::int64_t poses = 0;
  std::int64_t points = 0;
  std::int64_t probes = 0;
};

}  // namespace orvandel::plain
