#pragma once

#include "orvandel/classic/export.h"

namespace orvandel {

/// Why a contour file was refused, in the order of the checks.
enum class ContourFileFault {
  kNone,
  kCannotOpen,   ///< missing, not permitted, or no regular file
  kNoHeader,     ///< shorter than the three counts at its beginning
  kCannotRead,   ///< the disk fails, or somebody cuts the file while it is read
  kCount,        ///< a negative number of contours or points
  kLength,       ///< not exactly as long as its counts say
  kOutOfMemory,  ///< no memory for what the file holds
  kRecord,       ///< a contour without points, or one of points that the file does not hold
  kClosed,       ///< a closed flag other than 0 and 1
  kPartition,    ///< a point of two contours, or of none
  kCoordinate,   ///< x or y is not finite, or beyond `kLargestContourCoordinate`
  kDirection,    ///< g is not finite, or beyond `kLargestContourDirection`
  kSpread,       ///< a contour further from point to point than `kMostPixelsPerPoint`
};

/// Pixels. Images end at 65535; the rest is for hosts that move contours about.
constexpr double kLargestContourCoordinate = 1e6;

/// Radians. The stages bring a direction between 0 and two pi by single turns.
constexpr double kLargestContourDirection = 100.0;

/// Pixels from one point of a contour to the next, on average. A crawled contour has up to 6, as
/// one of its steps may lead back along all of it. Resampling puts a point on every pixel between.
constexpr double kMostPixelsPerPoint = 64.0;

/// What `LoadContoursChecked` found.
struct ContourFileError {
  ContourFileFault fault = ContourFileFault::kNone;
  /// What is wrong in words and numbers, without the path; empty when nothing is.
  char text[160] = "";

  bool IsError() const { return fault != ContourFileFault::kNone; }
};

/// As `ctd_load`, for a file that may be damaged or made to do harm. Counts and length are checked
/// before memory is asked for, so that a file cannot ask for more than it holds, and the contents
/// before the set is touched. What is accepted every operation on contours takes, in time and
/// memory in proportion to the file (but `ctd_save_img` makes an image as large as the largest
/// coordinates). Every file that `ctd_save` wrote of contours found in an image is accepted.
///
/// @param handle  a `ctd_` handle. Its contours are replaced when the file is accepted; after an
///                error it is as it was.
/// @param path    as for `ctd_load`; null cannot be opened.
/// @return  no error, or the first that was found. No exception leaves the function.
ORVANDEL_API ContourFileError LoadContoursChecked(void* handle, const char* path) noexcept;

}  // namespace orvandel
