#include "contours/sorting.h"

#include <algorithm>

namespace orvandel {

void SortContours(std::span<ContourRecord> records, ContourOrder order) {
  // A stable sort: what follows must not depend on the C library's choice among equal sizes.
  const bool largest_first = order == ContourOrder::kLargestFirst;
  std::stable_sort(records.begin(), records.end(),
                   [largest_first](const ContourRecord& a, const ContourRecord& b) {
                     return largest_first ? a.size > b.size : a.size < b.size;
                   });
}

}  // namespace orvandel
