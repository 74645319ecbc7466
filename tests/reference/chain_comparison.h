#pragma once

#include "platform/image_ptr.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/search_results.h"

namespace orvandel::test {

/// Sends copies of an image through the library's stages and the reference ones, and expects the same
/// bits after each: edge map and record, contours as crawled, smoothed, resampled and sorted, flags
/// and segments.
void ExpectSameStages(const ImagePtr& image, int threshold);

/// Trains both on a pattern and lets both search a scene, in time that stands still. Expects the
/// same status, pose and score, bit for bit.
///
/// @return  what was found; not for patterns that cannot be trained, which give their status.
Found ExpectSameSearch(const ImagePtr& pattern, const ImagePtr& scene,
                       const ReferenceParameters& parameters = {});

}  // namespace orvandel::test
