#include "cli/contour_set.h"

#include <new>

#include "cli/tool_error.h"

namespace orvandel::cli {

ContourSet FindContours(const ImageFile& picture, const ContourOptions& options, bool raw) {
  ContourSet set(ctd_create());
  if (!set) throw std::bad_alloc();
  const ImagePtr used_up = CopyOf(picture);
  const int threshold = options.edge_threshold == ContourOptions::kEstimate
                            ? ctd_compute_edge_strength(set.get(), used_up.get())
                            : options.edge_threshold;
  if (ctd_crawl(set.get(), used_up.get(), threshold, options.min_contour, options.max_contour) != 0)
    throw FileError(picture.path, "the library takes no picture of this kind");
  if (raw) return set;
  ctd_average(set.get());
  ctd_resample(set.get());
  ctd_sort(set.get(), 1);
  return set;
}

std::vector<Point> ContourPoints(void* contours, int i) {
  std::vector<Point> points(static_cast<std::size_t>(ctd_contour_size(contours, i)));
  if (points.empty()) return points;
  const double* const x = ctd_contour_xa(contours, i);
  const double* const y = ctd_contour_ya(contours, i);
  for (std::size_t k = 0; k < points.size(); ++k)
    points[k] = {x[k], y[k]};
  return points;
}

}  // namespace orvandel::cli
