#pragma once

#include "orvandel/classic/imgutil_i.h"

namespace orvandel::plain {

/// As `ctd_crawl`: edge points, then their chains.
///
/// @param set    a `ctd_` handle; its contours are replaced, all flags 0.
/// @param image  8-bit grey, below 65536 pixels each way; used up.
/// @throws std::bad_alloc
void Crawl(void* set, tImage* image, int threshold, int min_size, int max_size);

}  // namespace orvandel::plain
