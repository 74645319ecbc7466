// From an image to the contours of a set.

#include <algorithm>
#include <new>

#include "contours/contour_tracing.h"
#include "contours/point_arrays.h"
#include "edges/edge_detection.h"
#include "orvandel/classic/ctd.h"

namespace orvandel {
namespace {

constexpr int kNotGrey = 13;

/// Columns and rows of edge points are 16-bit numbers.
constexpr int kTooLarge = 65536;

bool CanBeCrawled(const tImage* image) {
  return image != nullptr && image->type == 1 && image->width < kTooLarge &&
         image->height < kTooLarge;
}

/// Gives the set exactly the traced contours; or nothing when memory is short.
void StoreContours(TracedContours traced, CCrawler& set) {
  auto records = AllocateZeros<ContourRecord>(static_cast<std::int64_t>(traced.records.size()));
  if (!records) return;
  std::copy(traced.records.begin(), traced.records.end(), records.get());

  FreeArrays(set);
  traced.points.MoveInto(set);
  set.contours = records.release();
  set.point_count = set.point_capacity = traced.num_points;
  set.contour_count = set.contour_capacity = static_cast<std::int32_t>(traced.records.size());
}

}  // namespace
}  // namespace orvandel

int ctd_crawl(void* handle, tImage* image, int edge_threshold, int min_size, int max_size) {
  if (!orvandel::CanBeCrawled(image)) return orvandel::kNotGrey;

  CCrawler& set = orvandel::SetOf(handle);
  set.edge_threshold = edge_threshold;
  set.min_size = min_size;
  set.max_size = max_size;
  if (set.edgeIm == nullptr) set.edgeIm = new (std::nothrow) CEdgeImgComplement;
  if (set.edgeIm == nullptr || set.edgeIm->SetSize(image->width, image->height) != 0) return 0;
  // An image that was left as it came is no edge map to be followed.
  if (!orvandel::DetectEdges(*image, edge_threshold, set.edgeIm)) return 0;
  try {
    orvandel::StoreContours(orvandel::TraceContours(image, set.edgeIm, min_size, max_size), set);
  } catch (const std::bad_alloc&) {
    // The set keeps its contours, and the status stays 0.
  }
  return 0;
}
