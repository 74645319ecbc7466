#pragma once

#include "contours/contour_set.h"
#include "contours/crawl.h"
#include "contours/resampling.h"

namespace orvandel {

/// The contours of an image as lines are fitted to them: smoothed, evenly spaced, the largest first.
/// Patterns and scenes take the same way.
///
/// @param image  as for `CrawlImage`; overwritten.
/// @param edges  receives the image's edge points, as they are before smoothing.
/// @throws std::bad_alloc
ContourSet ConditionedContours(const GreyRows& image, const CrawlOptions& crawl_options,
                               const ResampleOptions& resample_options, CEdgeImgComplement& edges);

}  // namespace orvandel
