#include "orvandel/classic/edge_record.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include "base/rounding.h"
#include "contours/crawler_adapter.h"

CEdgeImgComplement::CEdgeImgComplement()
    : x(nullptr),
      y(nullptr),
      g(nullptr),
      valid(nullptr),
      count(0),
      width(0),
      height(0),
      map_size(0) {}

CEdgeImgComplement::~CEdgeImgComplement() {
  std::free(x);
  std::free(y);
  std::free(g);
  std::free(valid);
}

int CEdgeImgComplement::SetSize(int new_width, int new_height) {
  if (new_width == width && new_height == height) return 0;

  // The old arrays go first: a new image size must not need room for both.
  std::free(x);
  std::free(y);
  std::free(g);
  std::free(valid);
  x = y = g = nullptr;
  valid = nullptr;
  width = height = map_size = 0;

  const std::int64_t cells =
      new_width < 0 || new_height < 0 ? -1 : std::int64_t{new_width} * new_height;
  if (cells > std::numeric_limits<std::int32_t>::max()) return 1;
  // Cells have a content only where `valid` is set.
  auto new_x = orvandel::AllocateUnset<double>(cells);
  auto new_y = orvandel::AllocateUnset<double>(cells);
  auto new_g = orvandel::AllocateUnset<double>(cells);
  auto new_valid = orvandel::AllocateZeros<std::uint8_t>(cells);
  if (!new_x || !new_y || !new_g || !new_valid) return 1;

  x = new_x.release();
  y = new_y.release();
  g = new_g.release();
  valid = new_valid.release();
  width = new_width;
  height = new_height;
  map_size = static_cast<std::int32_t>(cells);
  return 0;
}

void CEdgeImgComplement::Store(double point_x, double point_y, double direction) {
  const std::int32_t column = orvandel::TruncateToInt32(point_x);
  const std::int32_t row = orvandel::TruncateToInt32(point_y);
  if (column < 0 || column >= width || row < 0 || row >= height) return;

  const std::size_t cell = static_cast<std::size_t>(width) * static_cast<std::size_t>(row) +
                           static_cast<std::size_t>(column);
  x[cell] = point_x;
  y[cell] = point_y;
  g[cell] = direction;
  valid[cell] = 1;
  count = static_cast<std::int32_t>(static_cast<std::uint32_t>(count) + 1u);  // wraps
}

int CEdgeImgComplement::Refill(void* contours) {
  CCrawler& set = orvandel::SetOf(contours);
  if (valid != nullptr) std::memset(valid, 0, static_cast<std::size_t>(map_size));
  const orvandel::ContourSetView all = orvandel::ViewOf(set);
  for (std::size_t i = 0; i < all.NumContours(); ++i) {
    const orvandel::ContourView contour = all[i];
    for (std::size_t k = 0; k < contour.Size(); ++k)
      Store(contour.x[k], contour.y[k], contour.g[k]);
  }
  return set.contour_count;
}
