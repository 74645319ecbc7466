#include "contours/crawl.h"

#include <new>

#include "contours/contour_tracing.h"
#include "edges/edge_detection.h"

namespace orvandel {

ContourSet CrawlImage(const GreyRows& image, const CrawlOptions& options,
                      CEdgeImgComplement& edges) {
  if (edges.SetSize(image.width, image.height) != 0) throw std::bad_alloc();
  // An image that was left as it came is no edge map to be followed.
  if (!DetectEdges(image, options.edge_threshold, &edges)) throw std::bad_alloc();
  return TraceContours(image, &edges, options.min_size, options.max_size);
}

}  // namespace orvandel
