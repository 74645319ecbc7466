#pragma once

#include "contours/contour_set.h"
#include "orvandel/classic/edge_record.h"
#include "platform/grey_rows.h"

namespace orvandel {

/// Follows the 8-connected chains of non-zero pixels of an edge map, from both ends of each chain.
///
/// Chains start at the first pixel that a scan meets, row by row, outside row 0 and column 0. A chain
/// whose ends lie less than 3 pixels apart is closed.
///
/// @param edge_map  below 65536 pixels each way. Followed pixels are cleared.
/// @param edges     gives the pixels their sub-pixel positions and gradient directions. A pixel without an
///                  entry stands at its column and row with direction 0, as all do when this is null
///                  or not of the map's size.
/// @param min_size,max_size  fewest and most points of a contour that is kept.
/// @return  the contours back to back, in the order in which they were met, all flags 0.
/// @throws std::bad_alloc
ContourSet TraceContours(const GreyRows& edge_map, const CEdgeImgComplement* edges, int min_size,
                         int max_size);

}  // namespace orvandel
