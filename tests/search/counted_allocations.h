#pragma once

namespace orvandel::test {

/// Calls of operator new in this program so far.
long NumAllocations();

}  // namespace orvandel::test
