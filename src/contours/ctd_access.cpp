// The `ctd_` functions that make contour sets and give access to them.

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

#include "contours/crawler_adapter.h"
#include "orvandel/classic/ctd.h"

using orvandel::ContourSet;
using orvandel::ContourSetView;
using orvandel::ContourView;
using orvandel::SetOf;

namespace {

std::int32_t FirstPoint(void* handle, int i) {
  return SetOf(handle).contours[i].start;
}

/// Nothing when memory cannot be had.
std::optional<ContourSet> CopyOf(const ContourSetView& contours) {
  ContourSet copy;
  copy.num_contours = static_cast<std::int32_t>(contours.NumContours());
  copy.records = orvandel::AllocateUnset<ContourRecord>(copy.num_contours);
  if (!copy.records || !copy.points.AllocateUnset(static_cast<std::int64_t>(contours.NumPoints())))
    return std::nullopt;
  const ContourSetView to = copy.View();
  std::copy(contours.records.begin(), contours.records.end(), to.records.begin());
  std::copy(contours.x.begin(), contours.x.end(), to.x.begin());
  std::copy(contours.y.begin(), contours.y.end(), to.y.begin());
  std::copy(contours.g.begin(), contours.g.end(), to.g.begin());
  std::copy(contours.f.begin(), contours.f.end(), to.f.begin());
  return copy;
}

int CountActive(const ContourView& contour) {
  return static_cast<int>(std::count(contour.f.begin(), contour.f.end(), 0u));
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
  auto copy = CopyOf(orvandel::ViewOf(from));
  if (!copy) return;

  orvandel::StoreContours(std::move(*copy), to);
  to.edge_threshold = from.edge_threshold;
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
  return CountActive(orvandel::ViewOf(SetOf(handle))[static_cast<std::size_t>(i)]);
}

int ctd_active_point_count(void* handle) {
  const ContourSetView contours = orvandel::ViewOf(SetOf(handle));
  int active = 0;
  for (std::size_t i = 0; i < contours.NumContours(); ++i)
    active += CountActive(contours[i]);
  return active;
}
