#pragma once

#include "platform/grey_rows.h"

class CEdgeImgComplement;

namespace orvandel {

/// Finds edge points with sub-pixel position and gradient direction, as `SubCanny` does.
///
/// @param image      overwritten with the edge map: 255 on an edge point, 0 elsewhere. Left as it is when lower
///                   than 5 pixels.
/// @param threshold  least gradient magnitude of an edge point, on the scale of the magnitude table, 0 to 252.
/// @param edges      receives a point per edge pixel; null where only the map is wanted. One of another size
///                   than the image gets the points by position.
/// @return  false when memory was short; then nothing was written.
bool DetectEdges(const GreyRows& image, int threshold, CEdgeImgComplement* edges);

}  // namespace orvandel
