#pragma once

#include "contours/crawl.h"
#include "orvandel/classic/ctd.h"

namespace orvandel {

/// From an image to the contours that lines are fitted to: smoothed, evenly spaced, longest first.
/// Patterns and scenes take the same way. An image that cannot be crawled leaves the set's earlier
/// contours to be conditioned once more.
///
/// @param contours  a `ctd_` handle.
/// @param image     8-bit grey; overwritten.
/// @return  number of contours.
inline int PrepareContours(void* contours, tImage* image, const CrawlOptions& options) {
  ctd_crawl(contours, image, options.edge_threshold, options.min_size, options.max_size);
  ctd_average(contours);
  ctd_resample(contours);
  ctd_sort(contours, 1);
  return ctd_contour_count(contours);
}

}  // namespace orvandel
