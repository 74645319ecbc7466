#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "orvandel/classic/line_segment.h"

namespace orvandel::test {

/// The order of segment arrays in its simplest form: a merge sort with insertion runs of at most 32
/// elements, whose comparison also lets equal counts pass. In the insertion a new element goes
/// before every element with its count, and in a merge the later half goes first; so equal counts
/// come out in reverse.

inline bool ReferenceMorePoints(const CLineSegment& a, const CLineSegment& b) {
  return a.num_points >= b.num_points;
}

inline void ReferenceInsertionSort(std::span<CLineSegment> range) {
  for (std::size_t sorted = 1; sorted < range.size(); ++sorted) {
    const CLineSegment inserted = range[sorted];
    std::size_t place = 0;
    while (place < sorted && !ReferenceMorePoints(inserted, range[place]))
      ++place;
    for (std::size_t k = sorted; k > place; --k)
      range[k] = range[k - 1];
    range[place] = inserted;
  }
}

inline void ReferenceMerge(std::span<CLineSegment> range, std::size_t split) {
  const std::vector<CLineSegment> earlier(range.begin(),
                                          range.begin() + static_cast<std::ptrdiff_t>(split));
  std::size_t e = 0;      // next of the earlier half, which stands aside
  std::size_t l = split;  // next of the later half, which stands behind the free places
  for (CLineSegment& place : range) {
    if (e == earlier.size()) return;
    const bool take_later = l < range.size() && ReferenceMorePoints(range[l], earlier[e]);
    place = take_later ? range[l++] : earlier[e++];
  }
}

inline void ReferenceSegmentSort(std::span<CLineSegment> range) {
  constexpr std::size_t kLongestInsertion = 32;
  if (range.size() <= kLongestInsertion) return ReferenceInsertionSort(range);
  const std::size_t split = (range.size() + 1) / 2;
  ReferenceSegmentSort(range.first(split));
  ReferenceSegmentSort(range.subspan(split));
  ReferenceMerge(range, split);
}

}  // namespace orvandel::test
