#pragma once

#include <cstdint>
#include <vector>

#include "contours/point_arrays.h"
#include "orvandel/classic/crawler.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/imgutil_i.h"

namespace orvandel {

/// Contours as they are followed: the points of all of them back to back, all flags 0, and where each
/// contour lies.
struct TracedContours {
  PointArrays points;
  std::int32_t num_points = 0;
  std::vector<ContourRecord> records;
};

/// Follows the 8-connected chains of non-zero pixels of an edge map, from both ends of each chain.
///
/// Chains start at the first pixel that a scan meets, row by row, outside row 0 and column 0. A chain
/// whose ends lie less than 3 pixels apart is closed.
///
/// @param edge_map  8-bit grey, below 65536 pixels each way. Followed pixels are cleared.
/// @param edges     gives the pixels their sub-pixel positions and directions. A pixel without an
///                  entry stands at its column and row with direction 0, as all do when this is null
///                  or not of the map's size.
/// @param min_size,max_size  fewest and most points of a contour that is kept.
/// @throws std::bad_alloc
TracedContours TraceContours(tImage* edge_map, const CEdgeImgComplement* edges, int min_size,
                             int max_size);

}  // namespace orvandel
