#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>

#include "contours/contour_set.h"

// The binary contour file: three counts, the records, then x, y, g and f, as they lie in memory.
namespace orvandel {

struct ContourFileHeader {
  std::int32_t num_contours = 0;
  std::int32_t num_points = 0;
  std::int32_t edge_threshold = 0;
};
static_assert(sizeof(ContourFileHeader) == 12, "contour files begin with three 32-bit integers");

/// @param path  as the C library's fopen takes it; null cannot be opened.
/// @return  false when the file cannot be opened or written whole; a part of it may be left.
bool WriteContourFile(const ContourSetView& contours, std::int32_t edge_threshold,
                      const char* path);

// Reading in two steps. The file is trusted, and a short read goes undetected: what the file lacks is 0.

ContourFileHeader ReadContourFileHeader(std::FILE* file);

/// What follows the header; nothing when memory cannot be had or a count is negative.
std::optional<ContourSet> ReadContourFileBody(const ContourFileHeader& header, std::FILE* file);

}  // namespace orvandel
