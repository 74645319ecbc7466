#include "cli/contour_listing.h"

#include <algorithm>

#include "cli/library_file.h"
#include "cli/tool_error.h"
#include "orvandel/classic/ctd.h"

namespace orvandel::cli {
namespace {

// A head, a line per point, and two lines and an empty one per contour.
long NumLinesOfListing(void* contours) {
  return 1 + ctd_point_count(contours) + 3L * ctd_contour_count(contours);
}

}  // namespace

std::string ListContours(void* contours) {
  std::string listing =
      BytesWritten([contours](const char* path) { return ctd_dump(contours, path); });
  // The library does not tell of a full disk.
  if (std::count(listing.begin(), listing.end(), '\n') != NumLinesOfListing(contours))
    throw FileError("the contour listing", "cannot be written; is the disk full?");
  return listing;
}

}  // namespace orvandel::cli
