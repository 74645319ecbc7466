#pragma once

#include <cstdint>

#include "contours/contour_set.h"
#include "orvandel/classic/edge_record.h"
#include "platform/grey_rows.h"

namespace orvandel {

/// Columns and rows of an image that is crawled stay below this: those of edge points are 16-bit numbers.
inline constexpr int kCrawledSizeLimit = 65536;

struct CrawlOptions {
  /// Least gradient magnitude of an edge point, 0 to 252; a larger one finds fewer and clearer edges. A
  /// straight step from black to white has 118.
  std::int32_t edge_threshold = 16;
  /// Fewest points of a contour that is kept. Shorter ones hold hardly a straight range.
  std::int32_t min_size = 10;
  /// Most points; the default lets the contours of usual images pass.
  std::int32_t max_size = 100000;
};

/// The contours of an image: its edge points, followed through their 8-neighbours.
///
/// @param image  below `kCrawledSizeLimit` each way. Overwritten: it ends as an edge map without the edge
///               pixels that were followed.
/// @param edges  receives the edge points; gets the image's size.
/// @throws std::bad_alloc
ContourSet CrawlImage(const GreyRows& image, const CrawlOptions& options,
                      CEdgeImgComplement& edges);

}  // namespace orvandel
