#pragma once

#include <vector>

#include "cli/image_input.h"
#include "cli/polyline.h"
#include "cli/search_options.h"
#include "contours/contour_handle.h"
#include "orvandel/classic/crawler.h"

namespace orvandel::cli {

/// The options with an estimate from the image for `kEstimateThreshold`.
CrawlOptions WithThreshold(const CrawlOptions& options, const ImageFile& file);

/// An empty set. Throws std::bad_alloc when memory is short.
ContourHandle NewContourSet();

/// The contours of an image.
///
/// @param raw  as they are followed, instead of smoothed, evenly spaced and largest first as
///             training and search use them.
ContourHandle FindContours(const ImageFile& file, const CrawlOptions& options, bool raw);

inline CCrawler& FieldsOf(const ContourHandle& set) {
  return *static_cast<CCrawler*>(set.get());
}

/// The contours of a set, in its order.
std::vector<Polyline> PolylinesOf(const ContourHandle& set);

}  // namespace orvandel::cli
