#include "orvandel/classic/crawler.h"

#include <cstdlib>

#include "contours/crawler_adapter.h"
#include "orvandel/classic/edge_record.h"

CCrawler::CCrawler()
    : edgeIm(nullptr),
      x(nullptr),
      y(nullptr),
      g(nullptr),
      f(nullptr),
      contours(nullptr),
      edge_threshold(0),
      contour_count(0),
      point_count(0),
      point_capacity(0),
      contour_capacity(0),
      step(1.0),
      min_size(30),
      max_size(10000),
      min_dist(0.6) {}

CCrawler::~CCrawler() {
  orvandel::FreeArrays(*this);
  delete edgeIm;
}

namespace orvandel {
namespace {

/// The set owns what it is handed, and frees it as C memory.
template <typename T>
void Replace(T*& owned, HeapArray<T> array) {
  std::free(owned);
  owned = array.release();
}

}  // namespace

std::span<ContourRecord> Records(const CCrawler& set) {
  if (set.contours == nullptr || set.contour_count < 1) return {};
  return {set.contours, static_cast<std::size_t>(set.contour_count)};
}

std::int32_t NumPoints(const CCrawler& set) {
  return set.x == nullptr || set.point_count < 1 ? 0 : set.point_count;
}

ContourSetView ViewOf(const CCrawler& set) {
  const auto num_points = static_cast<std::size_t>(NumPoints(set));
  return {{set.x, num_points},
          {set.y, num_points},
          {set.g, num_points},
          {set.f, num_points},
          Records(set)};
}

void FreeArrays(CCrawler& set) {
  Replace<double>(set.x, nullptr);
  Replace<double>(set.y, nullptr);
  Replace<double>(set.g, nullptr);
  Replace<std::uint32_t>(set.f, nullptr);
  Replace<ContourRecord>(set.contours, nullptr);
}

void StorePoints(PointArrays points, CCrawler& set) {
  Replace(set.x, std::move(points.x));
  Replace(set.y, std::move(points.y));
  Replace(set.g, std::move(points.g));
  Replace(set.f, std::move(points.f));
  set.point_count = points.count;
  set.point_capacity = points.capacity;
}

void StoreContours(ContourSet contours, CCrawler& set) {
  StorePoints(std::move(contours.points), set);
  Replace(set.contours, std::move(contours.records));
  set.contour_count = set.contour_capacity = contours.num_contours;
}

}  // namespace orvandel
