#pragma once

#include <cstdint>

#include "orvandel/classic/ctd.h"

namespace orvandel {

/// How contours are found, in patterns and scenes alike.
struct CrawlOptions {
  std::int32_t edge_threshold = 16;  ///< gradient magnitude, 0 to 252; higher sees fewer edges
  std::int32_t min_size = 10;        ///< fewest points of a contour; shorter ones are mostly noise
  std::int32_t max_size = 100000;    ///< most points of a contour: all but nonsense
};

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
