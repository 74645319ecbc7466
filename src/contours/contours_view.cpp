#include "contours/contours_view.h"

#include <cstddef>

namespace orvandel {

ContoursView ViewOf(const CCrawler& set) {
  if (set.contours == nullptr || set.contour_count < 1) return {};
  return {{set.contours, static_cast<std::size_t>(set.contour_count)}, set.x, set.y, set.g};
}

}  // namespace orvandel
