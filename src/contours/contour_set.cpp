// Life cycle of contour sets and access to their contours.

#include <algorithm>
#include <new>

#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"

using orvandel::AllocateZeros;
using orvandel::PointArrays;
using orvandel::SetOf;

namespace {

std::int32_t FirstPoint(void* handle, int i) {
  return SetOf(handle).contours[i].start;
}

int CountActive(const CCrawler& set, const ContourRecord& contour) {
  if (contour.size < 1) return 0;
  const std::uint32_t* flags = set.f + contour.start;
  return static_cast<int>(std::count(flags, flags + contour.size, 0u));
}

}  // namespace

void* ctd_create() {
  return new (std::nothrow) CCrawler;
}

void ctd_delete(void* handle) {
  delete static_cast<CCrawler*>(handle);
}

void ctd_copy(void* source, void* destination) {
  if (source == destination) return;
  CCrawler& from = SetOf(source);
  CCrawler& to = SetOf(destination);
  const auto from_records = orvandel::Records(from);
  const std::int32_t num_points = orvandel::NumPoints(from);

  PointArrays points;
  auto records = AllocateZeros<ContourRecord>(static_cast<std::int64_t>(from_records.size()));
  if (!records || !points.Allocate(num_points)) return;
  std::copy(from_records.begin(), from_records.end(), records.get());
  std::copy_n(from.x, num_points, points.x.get());
  std::copy_n(from.y, num_points, points.y.get());
  std::copy_n(from.g, num_points, points.g.get());
  std::copy_n(from.f, num_points, points.f.get());

  orvandel::FreeArrays(to);
  points.MoveInto(to);
  to.contours = records.release();
  to.edge_threshold = from.edge_threshold;
  to.contour_count = static_cast<std::int32_t>(from_records.size());
  to.point_count = num_points;
  to.point_capacity = from.point_capacity;
  to.contour_capacity = from.contour_capacity;
  to.step = from.step;
  to.min_size = from.min_size;
  to.max_size = from.max_size;
}

int ctd_contour_count(void* handle) {
  return SetOf(handle).contour_count;
}

int ctd_point_count(void* handle) {
  return SetOf(handle).point_count;
}

int ctd_contour_size(void* handle, int i) {
  return SetOf(handle).contours[i].size;
}

int ctd_contour_closed(void* handle, int i) {
  return SetOf(handle).contours[i].closed;
}

double ctd_contour_x(void* handle, int i, int k) {
  return SetOf(handle).x[FirstPoint(handle, i) + k];
}

double ctd_contour_y(void* handle, int i, int k) {
  return SetOf(handle).y[FirstPoint(handle, i) + k];
}

double ctd_contour_g(void* handle, int i, int k) {
  return SetOf(handle).g[FirstPoint(handle, i) + k];
}

std::uint32_t ctd_contour_f(void* handle, int i, int k) {
  return SetOf(handle).f[FirstPoint(handle, i) + k];
}

void ctd_set_contour_f(void* handle, int i, int k, std::uint32_t value) {
  SetOf(handle).f[FirstPoint(handle, i) + k] = value;
}

double* ctd_contour_xa(void* handle, int i) {
  return SetOf(handle).x + FirstPoint(handle, i);
}

double* ctd_contour_ya(void* handle, int i) {
  return SetOf(handle).y + FirstPoint(handle, i);
}

double* ctd_contour_ga(void* handle, int i) {
  return SetOf(handle).g + FirstPoint(handle, i);
}

std::int32_t* ctd_contour_fa(void* handle, int i) {
  return reinterpret_cast<std::int32_t*>(SetOf(handle).f + FirstPoint(handle, i));
}

int ctd_min_size(void* handle) {
  return SetOf(handle).min_size;
}

void ctd_set_min_size(void* handle, int min_size) {
  SetOf(handle).min_size = min_size;
}

CEdgeImgComplement* ctd_edgeIm(void* handle) {
  return SetOf(handle).edgeIm;
}

int ctd_contour_active_point_count(void* handle, int i) {
  const CCrawler& set = SetOf(handle);
  return CountActive(set, set.contours[i]);
}

int ctd_active_point_count(void* handle) {
  CCrawler& set = SetOf(handle);
  int active = 0;
  for (const ContourRecord& contour : orvandel::Records(set))
    active += CountActive(set, contour);
  return active;
}
