#include "cli/contour_set.h"

#include <new>

namespace orvandel::cli {

CrawlOptions WithThreshold(const CrawlOptions& options, const ImageFile& file) {
  CrawlOptions in_force = options;
  if (options.edge_threshold == kEstimateThreshold)
    in_force.edge_threshold = ctd_compute_edge_strength(/*handle=*/nullptr, file.image.get());
  return in_force;
}

ContourHandle NewContourSet() {
  ContourHandle set(ctd_create());
  if (!set) throw std::bad_alloc();
  return set;
}

ContourHandle FindContours(const ImageFile& file, const CrawlOptions& options, bool raw) {
  ContourHandle set = NewContourSet();
  const ImagePtr overwritten = CopyOf(file);
  const CrawlOptions in_force = WithThreshold(options, file);
  if (raw) {
    ctd_crawl(set.get(), overwritten.get(), in_force.edge_threshold, in_force.min_size,
              in_force.max_size);
  } else {
    PrepareContours(set.get(), overwritten.get(), in_force);
  }
  return set;
}

std::vector<Polyline> PolylinesOf(const ContourHandle& set) {
  void* const handle = set.get();
  std::vector<Polyline> polylines(static_cast<std::size_t>(ctd_contour_count(handle)));
  int contour = 0;
  for (Polyline& polyline : polylines) {
    const double* const x = ctd_contour_xa(handle, contour);
    const double* const y = ctd_contour_ya(handle, contour);
    for (int i = 0; i < ctd_contour_size(handle, contour); ++i)
      polyline.points.push_back({x[i], y[i]});
    polyline.is_closed = ctd_contour_closed(handle, contour) != 0;
    ++contour;
  }
  return polylines;
}

}  // namespace orvandel::cli
