#pragma once

#include "orvandel/classic/export.h"
#include "orvandel/classic/imgutil_i.h"

class CEdgeImgComplement;

extern "C" {

/// Finds edge points with sub-pixel position and gradient direction in an 8-bit grey image.
///
/// 3 x 3 box smoothing, diagonal difference gradient, one threshold, non-maximum suppression across
/// the edge in four sectors, and a parabola through three magnitudes for the position in 1/256
/// pixel. After J. Canny, "A computational approach to edge detection", IEEE PAMI 8(6), 1986,
/// without hysteresis.
///
/// @param image      8-bit grey, of rows that do not overlap. Overwritten with the edge map: 255 on
///                   an edge point, 0 elsewhere. Left as it is when lower than 5 pixels.
/// @param threshold  least gradient magnitude of an edge point, 0.7 times the gradient's length: a
///                   straight step from black to white has 118. 0 and below keep every pixel as a
///                   candidate, above 252 none.
/// @param edges      sized to the image by the caller. Receives a point per edge pixel; presence is
///                   cleared first, `count` goes on counting.
/// @return  0 always, also for a null image and when memory is short (then nothing is written).
///
/// Several threads may each run their own image and record.
ORVANDEL_API int SubCanny(tImage* image, int threshold, CEdgeImgComplement* edges);

/// Builds the magnitude and direction tables that the detector reads; does nothing when they exist.
/// `SubCanny` does this by itself. (Hosts link against the spelling of this name.)
ORVANDEL_API void InitalizeSubCannyTable(void);

/// Releases the tables; the next use builds them again. Safe at any time but while a detection
/// runs.
ORVANDEL_API void DeleteSubCannyTable(void);

}  // extern "C"
