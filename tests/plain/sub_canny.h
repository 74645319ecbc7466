#pragma once

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/imgutil_i.h"

namespace orvandel::plain {

/// As the library's `SubCanny`: candidates row by row, then peaks, then the edge map and the
/// record.
/// @throws std::bad_alloc
void SubCanny(tImage* image, int threshold, CEdgeImgComplement* edges);

}  // namespace orvandel::plain
