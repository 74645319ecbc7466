#pragma once

namespace orvandel::plain {

/// As `ctd_sort` with the largest first: contours of equal size keep their order.
void SortLargestFirst(void* contours);

}  // namespace orvandel::plain
