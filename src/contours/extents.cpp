// Centre and extent of a set's contours.

#include <cstdint>

#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"

namespace orvandel {
namespace {

// Where the search for an extreme starts, and what an empty set answers.
constexpr double kBelowAll = -999999999.0;
constexpr double kAboveAll = 999999999.0;

/// Largest of `values`, the first of equals; `partner`, where wanted, follows it through `partners`.
double Largest(const double* values, const double* partners, std::int32_t count, double* partner) {
  double largest = kBelowAll;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!(values[i] > largest)) continue;
    largest = values[i];
    if (partner != nullptr) *partner = partners[i];
  }
  return largest;
}

double Smallest(const double* values, const double* partners, std::int32_t count, double* partner) {
  double smallest = kAboveAll;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!(values[i] < smallest)) continue;
    smallest = values[i];
    if (partner != nullptr) *partner = partners[i];
  }
  return smallest;
}

double Sum(const double* values, std::int32_t count) {
  double sum = 0.0;
  for (std::int32_t i = 0; i < count; ++i)
    sum += values[i];
  return sum;
}

}  // namespace
}  // namespace orvandel

int ctd_centroid(void* handle, double* cx, double* cy) {
  const CCrawler& set = orvandel::SetOf(handle);
  const std::int32_t count = orvandel::NumPoints(set);
  *cx = orvandel::Sum(set.x, count) / count;
  *cy = orvandel::Sum(set.y, count) / count;
  return 0;
}

double ctd_maxx(void* handle, double* other) {
  const CCrawler& set = orvandel::SetOf(handle);
  return orvandel::Largest(set.x, set.y, orvandel::NumPoints(set), other);
}

double ctd_minx(void* handle, double* other) {
  const CCrawler& set = orvandel::SetOf(handle);
  return orvandel::Smallest(set.x, set.y, orvandel::NumPoints(set), other);
}

double ctd_maxy(void* handle, double* other) {
  const CCrawler& set = orvandel::SetOf(handle);
  return orvandel::Largest(set.y, set.x, orvandel::NumPoints(set), other);
}

double ctd_miny(void* handle, double* other) {
  const CCrawler& set = orvandel::SetOf(handle);
  return orvandel::Smallest(set.y, set.x, orvandel::NumPoints(set), other);
}

void ctd_bbox(void* handle, double* min_x, double* min_y, double* max_x, double* max_y) {
  *min_x = ctd_minx(handle, nullptr);
  *min_y = ctd_miny(handle, nullptr);
  *max_x = ctd_maxx(handle, nullptr);
  *max_y = ctd_maxy(handle, nullptr);
}
