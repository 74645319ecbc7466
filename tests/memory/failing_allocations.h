#pragma once

#include <cstddef>

namespace orvandel::test {

enum class Failure {
  kOnce,    ///< one allocation fails, the next ones succeed
  kForGood  ///< from one allocation on, all fail
};

/// While it lives, an allocation of this program fails: operator new, and malloc, calloc and
/// realloc as the library calls them. Those of the C library for itself do not. One at a time.
class FailingAllocation {
 public:
  /// @param index  0 for the first allocation from now on.
  FailingAllocation(long index, Failure failure);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// Whether so many allocations were asked for that one failed.
  static bool HasHappened();
};

/// Blocks that were allocated and not released so far.
long NumLiveBlocks();

}  // namespace orvandel::test
