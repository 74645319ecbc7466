// The `ctd_` functions that read and write files, and draw.

#include <cstdio>
#include <new>
#include <utility>

#include "base/rounding.h"
#include "contours/checked_contour_file.h"
#include "contours/contour_drawing.h"
#include "contours/contour_file.h"
#include "contours/contour_listing.h"
#include "contours/crawler_adapter.h"
#include "contours/ctd_status.h"
#include "contours/extents.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/mvtools_i.h"
#include "platform/image_ptr.h"

using orvandel::SetOf;
using orvandel::ViewOf;

namespace {

/// The tools library sets the pixels, and passes over those outside.
orvandel::Drawing DrawingOn(tImage* image) {
  return {image->width, image->height, [image](int column, int row, std::uint8_t grey) {
            mvt_put_bpixel(image, column, row, grey);
          }};
}

}  // namespace

int ctd_save(void* handle, char* path) {
  CCrawler& set = SetOf(handle);
  const bool written = orvandel::WriteContourFile(ViewOf(set), set.edge_threshold, path);
  return written ? orvandel::kCtdDone : orvandel::kCtdFileError;
}

int ctd_load(void* handle, char* path) {
  std::FILE* file = path != nullptr ? std::fopen(path, "rb") : nullptr;
  if (file == nullptr) return orvandel::kCtdFileError;

  // The old arrays go first: a file must not need room for both.
  CCrawler& set = SetOf(handle);
  orvandel::FreeArrays(set);
  const orvandel::ContourFileHeader header = orvandel::ReadContourFileHeader(file);
  set.contour_count = header.num_contours;
  set.point_count = header.num_points;
  set.edge_threshold = header.edge_threshold;

  auto contours = orvandel::ReadContourFileBody(header, file);
  // The file stays open on this way out, which only counts that no memory holds lead to.
  if (!contours) return orvandel::kCtdOutOfMemory;
  std::fclose(file);
  orvandel::StoreContours(std::move(*contours), set);
  return orvandel::kCtdDone;
}

orvandel::ContourFileError orvandel::LoadContoursChecked(void* handle, const char* path) noexcept {
  CCrawler& set = SetOf(handle);
  ContourSet contours;
  const auto error = ReadContourFileChecked(path, contours, set.edge_threshold);
  if (!error.IsError()) StoreContours(std::move(contours), set);
  return error;
}

int ctd_dump(void* handle, char* path) {
  try {
    const bool written = orvandel::WriteContourListing(ViewOf(SetOf(handle)), path);
    return written ? orvandel::kCtdDone : orvandel::kCtdFileError;
  } catch (const std::bad_alloc&) {
    return orvandel::kCtdFileError;  // no memory for the stream
  }
}

int ctd_create_img(void* handle, tImage* image, double dx, double dy, std::uint8_t value,
                   std::uint8_t mark_value) {
  if (image == nullptr) return orvandel::kCtdDone;
  orvandel::DrawContours(ViewOf(SetOf(handle)), {dx, dy, value, mark_value}, DrawingOn(image));
  return orvandel::kCtdDone;
}

int ctd_save_img(void* handle, char* path) {
  const auto contours = ViewOf(SetOf(handle));
  const auto width = orvandel::TruncateToInt32(orvandel::LargestOf(contours.x).value);
  const auto height = orvandel::TruncateToInt32(orvandel::LargestOf(contours.y).value);
  const orvandel::ImagePtr image(im_create(1, width, height));
  if (!image) return orvandel::kCtdDone;
  orvandel::DrawContours(contours, {}, DrawingOn(image.get()));
  im_file_write(image.get(), path, 0);
  return orvandel::kCtdDone;
}
