#include "contours/conditioning.h"

#include "contours/smoothing.h"
#include "contours/sorting.h"

namespace orvandel {

ContourSet ConditionedContours(const GreyRows& image, const CrawlOptions& crawl_options,
                               const ResampleOptions& resample_options, CEdgeImgComplement& edges) {
  ContourSet contours = CrawlImage(image, crawl_options, edges);
  SmoothContours(contours.View());
  contours.points = ResampleContours(contours.View(), resample_options);
  SortContours(contours.View().records, ContourOrder::kLargestFirst);
  return contours;
}

}  // namespace orvandel
