#pragma once

#include "contours/contour_set.h"

namespace orvandel {

/// Lists contours in a text file for people, with a point as decimal mark and the line ends of the system.
///
/// @param path  as the C++ library's streams take it; null cannot be opened.
/// @return  false when the file cannot be opened.
/// @throws std::bad_alloc
bool WriteContourListing(const ContourSetView& contours, const char* path);

}  // namespace orvandel
