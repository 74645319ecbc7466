// Contours drawn into grey images.

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/mvtools_i.h"
#include "platform/image_ptr.h"

namespace orvandel {
namespace {

constexpr int kMarkSpacing = 5;  // points from one direction mark to the next
constexpr int kMarkLength = 9;   // pixels
constexpr int kPointGrey = 250;

/// The pixel that holds (x, y); the pixel setter passes over one outside the image.
void Plot(tImage* image, double x, double y, int value) {
  mvt_put_bpixel(image, TruncateToInt32(x), TruncateToInt32(y), value);
}

struct Displacement {
  double dx;
  double dy;
};

/// A short line along a point's direction. What is clipped is its place before the displacement.
void DrawMark(const CCrawler& set, std::int32_t k, Displacement by, int value, tImage* image) {
  const auto [sine, cosine] = SinCosOf(set.g[k]);
  for (int s = 1; s <= kMarkLength; ++s) {
    const double x = set.x[k] + s * cosine;
    const double y = set.y[k] - s * sine;
    const bool inside = 0 < x && x < image->width && 0 < y && y < image->height;
    if (inside) Plot(image, x + by.dx, y + by.dy, value);
  }
}

}  // namespace
}  // namespace orvandel

int ctd_create_img(void* handle, tImage* image, double dx, double dy, std::uint8_t value,
                   std::uint8_t mark_value) {
  if (image == nullptr) return 0;
  CCrawler& set = orvandel::SetOf(handle);
  for (const ContourRecord& contour : orvandel::Records(set)) {
    for (std::int32_t i = 0; i < contour.size; ++i) {
      const std::int32_t k = contour.start + i;
      orvandel::Plot(image, set.x[k] + dx, set.y[k] + dy, value);
      if (i % orvandel::kMarkSpacing == 0 && mark_value != 0) {
        orvandel::DrawMark(set, k, {dx, dy}, mark_value, image);
      }
    }
  }
  return 0;
}

int ctd_save_img(void* handle, char* path) {
  CCrawler& set = orvandel::SetOf(handle);
  const orvandel::ImagePtr image(im_create(1, orvandel::TruncateToInt32(ctd_maxx(handle, nullptr)),
                                           orvandel::TruncateToInt32(ctd_maxy(handle, nullptr))));
  if (!image) return 0;
  for (const ContourRecord& contour : orvandel::Records(set)) {
    for (std::int32_t k = contour.start; k < contour.start + contour.size; ++k) {
      orvandel::Plot(image.get(), set.x[k], set.y[k], orvandel::kPointGrey);
    }
  }
  im_file_write(image.get(), path, 0);
  return 0;
}
