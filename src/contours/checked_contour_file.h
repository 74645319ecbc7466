#pragma once

#include <cstdint>

#include "contours/contour_file.h"
#include "orvandel/classic/checked_contour_file.h"

namespace orvandel {

/// Reads a contour file of unknown origin: `LoadContoursChecked` tells what is accepted.
///
/// @param path  as for `WriteContourFile`.
/// @param contours,edge_threshold  receive the file's content; after an error they are as they were.
/// @return  no error, or the first that was found.
ContourFileError ReadContourFileChecked(const char* path, ContourSet& contours,
                                        std::int32_t& edge_threshold) noexcept;

}  // namespace orvandel
