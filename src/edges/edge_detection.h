#pragma once

#include "orvandel/classic/imgutil_i.h"

class CEdgeImgComplement;

namespace orvandel {

/// As `SubCanny`, for callers that have to tell an edge map from an image that was left as it came.
///
/// @return  false when memory was short; then nothing was written.
bool DetectEdges(tImage& image, int threshold, CEdgeImgComplement* edges);

}  // namespace orvandel
