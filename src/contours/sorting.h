#pragma once

#include <span>

#include "orvandel/classic/crawler.h"

namespace orvandel {

enum class ContourOrder { kSmallestFirst, kLargestFirst };

/// Orders contours by their number of points; equal ones keep their order. The points stay where they are.
void SortContours(std::span<ContourRecord> records, ContourOrder order);

}  // namespace orvandel
