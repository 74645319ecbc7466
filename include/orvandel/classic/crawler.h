#pragma once

#include <cstdint>

#include "orvandel/classic/export.h"

class CEdgeImgComplement;

/// Where one contour's points lie in its set. Three 32-bit integers, in memory as in contour files.
struct ContourRecord {
  std::int32_t start;   ///< index of the first point
  std::int32_t size;    ///< number of points
  std::int32_t closed;  ///< 1 when the contour closes on itself, else 0
};
static_assert(sizeof(ContourRecord) == 12, "contour files hold records of 12 bytes");

/// The contour set behind every `ctd_` handle: points in four parallel arrays, and records that cut
/// them into contours. Made by `ctd_create`, released by `ctd_delete`.
///
/// After a crawl, a resampling or a load the contours lie back to back in record order; sorting
/// moves the records alone, so a reader goes through `start`.
class ORVANDEL_API CCrawler {
 public:
  CCrawler();
  virtual ~CCrawler();
  CCrawler(const CCrawler&) = delete;
  CCrawler& operator=(const CCrawler&) = delete;

  CEdgeImgComplement* edgeIm;  ///< sub-pixel edge record, made by the first crawl; owned
  double* x;                   ///< x of every point, pixels; owned, as the four below
  double* y;                   ///< y of every point, pixels, downwards
  double* g;         ///< gradient direction, radians: the vector (cos g, -sin g); 0 where unknown
  std::uint32_t* f;  ///< flags: 0 = active; line extraction writes 1 on straight ranges
  ContourRecord* contours;        ///< one record a contour
  std::int32_t edge_threshold;    ///< threshold of the last crawl
  std::int32_t contour_count;     ///< number of contours
  std::int32_t point_count;       ///< number of points of all contours
  std::int32_t point_capacity;    ///< elements allocated in x, y, g, f
  std::int32_t contour_capacity;  ///< records allocated in `contours`
  double step;                    ///< spacing of resampled points, pixels
  std::int32_t min_size;          ///< fewest points of a crawled contour
  std::int32_t max_size;          ///< most points of a crawled contour
  double min_dist;                ///< resampling passes over points nearer than this, pixels
};
