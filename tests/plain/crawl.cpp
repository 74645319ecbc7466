#include "tests/plain/crawl.h"

#include <algorithm>
#include <new>
#include <utility>

#include "contours/crawler_adapter.h"
#include "orvandel/classic/edge_record.h"
#include "tests/plain/contour_tracing.h"
#include "tests/plain/sub_canny.h"

namespace orvandel::plain {
namespace {

/// Gives the set exactly the traced contours, all flags 0.
void StoreContours(const TracedContours& traced, CCrawler& set) {
  ContourSet contours;
  contours.records = AllocateZeros<ContourRecord>(static_cast<std::int64_t>(traced.records.size()));
  if (!contours.records ||
      !contours.points.AllocateZeros(static_cast<std::int64_t>(traced.x.size()))) {
    throw std::bad_alloc();
  }
  std::copy(traced.x.begin(), traced.x.end(), contours.points.x.get());
  std::copy(traced.y.begin(), traced.y.end(), contours.points.y.get());
  std::copy(traced.g.begin(), traced.g.end(), contours.points.g.get());
  std::copy(traced.records.begin(), traced.records.end(), contours.records.get());
  contours.num_contours = static_cast<std::int32_t>(traced.records.size());
  orvandel::StoreContours(std::move(contours), set);
}

}  // namespace

void Crawl(void* set, tImage* image, int threshold, int min_size, int max_size) {
  CCrawler& fields = SetOf(set);
  fields.edge_threshold = threshold;
  fields.min_size = min_size;
  fields.max_size = max_size;
  if (fields.edgeIm == nullptr) fields.edgeIm = new CEdgeImgComplement;
  if (fields.edgeIm->SetSize(image->width, image->height) != 0) throw std::bad_alloc();
  SubCanny(image, threshold, fields.edgeIm);
  StoreContours(TraceContours(image, fields.edgeIm, min_size, max_size), fields);
}

}  // namespace orvandel::plain
