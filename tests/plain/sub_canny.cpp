#include "tests/plain/sub_canny.h"

#include <cstring>
#include <new>

#include "base/rounding.h"
#include "edges/gradient_tables.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/mvtools_i.h"
#include "platform/image_ptr.h"
#include "tests/plain/edge_candidates.h"
#include "tests/plain/edge_points.h"

namespace orvandel::plain {
namespace {

/// Fewer rows hold no pixel with the neighbourhood that smoothing and gradient need.
constexpr int kLeastRows = 5;

std::vector<EdgePoint> DetectEdgePoints(const tImage& image, int threshold) {
  const GradientTables* tables = AcquireGradientTables();
  const ImagePtr magnitude(im_create(1, image.width, image.height));
  if (tables == nullptr || !magnitude) throw std::bad_alloc();
  mvt_constant(magnitude.get(), 0);
  return LocateEdgePoints(FindEdgeCandidates(image, threshold, *tables, *magnitude), *magnitude);
}

void DrawEdgeMap(const std::vector<EdgePoint>& points, tImage& image) {
  mvt_constant(&image, 0);
  for (const EdgePoint& p : points)
    image.row[p.y][p.x] = 255;
}

void RecordEdgePoints(const std::vector<EdgePoint>& points, CEdgeImgComplement& edges) {
  if (edges.valid != nullptr) {
    std::memset(edges.valid, 0, static_cast<std::size_t>(edges.map_size));
  }
  for (const EdgePoint& p : points) {
    const auto turn = static_cast<std::int8_t>(p.direction);  // half turns either way
    edges.Store(p.x + p.sub_x / 256.0, p.y + p.sub_y / 256.0, turn * kTwoPi / 256);
  }
}

}  // namespace

void SubCanny(tImage* image, int threshold, CEdgeImgComplement* edges) {
  if (image == nullptr || image->height < kLeastRows) return;
  const auto points = DetectEdgePoints(*image, threshold);
  DrawEdgeMap(points, *image);
  if (edges != nullptr) RecordEdgePoints(points, *edges);
}

}  // namespace orvandel::plain
