#pragma once

#include "examples/render/scene.h"

namespace orvandel::render {

// Machined parts for example scenes, of the same greys: a bevelled rim around a lighter face, on a
// darker ground.

/// The part to find: a flange with a bore, bolt holes, a slot in a milled pocket and an engraved
/// scale. Its edges are straight over long stretches, and no rotation or mirror image maps it onto
/// itself, so its pose is unique. 188 x 148 in a frame of 220 x 180.
Part MetalBracket();

/// A round one: a cam with a bore and three holes, without any straight edge. Its rim is nowhere far
/// from a circle, but no rotation or mirror image maps it onto itself. Within 136 x 126.
Part Cam();

// Things that lie around them.
Part Gear();                                ///< 24 teeth, 132 across
Part Washer(double radius, double bore);    ///< outer and inner radius
Part HexNut(double across_flats);           ///< with a thread half as wide
Part Rod(double length, double thickness);  ///< round stock, seen from the side
Part Plate(double width, double height);    ///< with rounded corners and a hole near each

}  // namespace orvandel::render
