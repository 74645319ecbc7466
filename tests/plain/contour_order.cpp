#include "tests/plain/contour_order.h"

#include <algorithm>

#include "contours/point_arrays.h"

namespace orvandel::plain {

void SortLargestFirst(void* contours) {
  const auto records = Records(SetOf(contours));
  std::stable_sort(records.begin(), records.end(),
                   [](const ContourRecord& a, const ContourRecord& b) { return a.size > b.size; });
}

}  // namespace orvandel::plain
