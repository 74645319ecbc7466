// Order of a set's contours.

#include <algorithm>

#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"

int ctd_sort(void* handle, int descending) {
  // A stable sort: what follows must not depend on the C library's choice among equal sizes.
  const auto records = orvandel::Records(orvandel::SetOf(handle));
  std::stable_sort(records.begin(), records.end(),
                   [descending](const ContourRecord& a, const ContourRecord& b) {
                     return descending != 0 ? a.size > b.size : a.size < b.size;
                   });
  return 0;
}
