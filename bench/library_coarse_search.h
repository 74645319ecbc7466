#pragma once

#include <optional>

#include "bench/workload.h"

namespace orvandel::bench {

struct CoarseRun {
  double seconds = 0;
  double probes = 0;  ///< looks at a pixel of the scene's edges, in whatever form they are kept
};

/// The library's coarse search by itself, with the probes that it counted. This is the one place
/// that reaches behind the library's public interface for it; nothing while the library has no
/// counter, and the table then says so.
inline std::optional<CoarseRun> RunLibraryCoarseSearch(const Picture& /*pattern*/,
                                                       const Picture& /*scene*/) {
  return std::nullopt;
}

}  // namespace orvandel::bench
