#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvandel/classic/export.h"
#include "orvandel/classic/line_segment.h"

// An element type's vector is laid out before anything is packed.
static_assert(alignof(std::vector<CLineSegment>) == alignof(void*),
              "a vector holds nothing wider than a pointer");

#if defined(ORVANDEL_PACKED_LAYOUT)
#pragma pack(push, 4)
#endif

/// Turns the contours of a set into straight line segments: marks the points that lie on straight
/// ranges, fits a line through each run of them, and joins the two pieces that meet at the seam
/// of a closed contour.
///
/// Out of memory surfaces as std::bad_alloc or std::length_error.
class ORVANDEL_API CLineExtracter {
 public:
  CLineExtracter();
  CLineExtracter(const CLineExtracter& other);
  CLineExtracter& operator=(const CLineExtracter& other);
  virtual ~CLineExtracter();

  /// Replaces the segments by those of a contour set, most points first; among equal counts the one
  /// found later comes first.
  ///
  /// @param contours  a `ctd_` handle. Its flags are overwritten: 1 on a straight range, else 0.
  /// @return  number of segments.
  int Extract(void* contours);

  /// The segments of the last extraction; they stay until the next one.
  std::vector<CLineSegment>& GetSegments();

  /// Flags the points of one contour that lie within `max_deviation` of the chord between the
  /// points `neighbour_offset` before and after them.
  ///
  /// @param x,y     coordinates, `n` each.
  /// @param f       flags, `n`; of an open contour the first and last `neighbour_offset` stay as
  ///                they are.
  /// @param closed  0 for an open contour.
  /// @return  0, or 1 when the contour is too short (nothing is written).
  int MarkStraightPoints(const double* x, const double* y, int* f, int n, int closed);

  double max_deviation;           ///< pixels, 0.25; larger accepts rounder ranges
  std::int32_t neighbour_offset;  ///< points, 3; also the largest gap in pixels that is joined
  double max_fit_error;           ///< pixels RMS, 1.0; runs at or above it are dropped
  std::int32_t min_points;        ///< 4; runs of no more points are dropped
  double max_join_angle;          ///< radians, one degree; pieces that differ by it are not joined
  std::vector<CLineSegment> segments;  ///< result of the last extraction
  std::int32_t spare_number;           ///< carried for the layout
  std::string spare_text;              ///< carried for the layout
};

#if defined(ORVANDEL_PACKED_LAYOUT)
#pragma pack(pop)
#endif
