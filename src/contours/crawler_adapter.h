#pragma once

#include <cstdint>
#include <span>

#include "contours/contour_set.h"
#include "orvandel/classic/crawler.h"

// Between the classic contour set, which hosts reach into, and contours as plain data.
namespace orvandel {

inline CCrawler& SetOf(void* handle) {
  return *static_cast<CCrawler*>(handle);
}

/// The records of a set; none when it has no arrays, whatever its counts say.
std::span<ContourRecord> Records(const CCrawler& set);

/// Number of points that the arrays hold; 0 when the set has none, whatever its counts say.
std::int32_t NumPoints(const CCrawler& set);

/// The contours of a set; valid until its arrays are replaced.
ContourSetView ViewOf(const CCrawler& set);

/// Frees all five arrays of a set and leaves the pointers null, the counts as they are.
void FreeArrays(CCrawler& set);

/// Replaces the points of a set, and not its records.
void StorePoints(PointArrays points, CCrawler& set);

/// Replaces the points and records of a set.
void StoreContours(ContourSet contours, CCrawler& set);

}  // namespace orvandel
