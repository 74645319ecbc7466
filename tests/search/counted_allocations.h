#pragma once

#include <cstddef>

namespace orvandel::test {

/// Calls of operator new in this program so far.
long NumAllocations();

/// Bytes of the largest of them since the last call of this.
std::size_t TakeLargestAllocation();

}  // namespace orvandel::test
