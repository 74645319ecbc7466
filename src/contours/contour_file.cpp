// The binary contour file: three counts, the records, then x, y, g and f, as they lie in memory.

#include <cstdio>

#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"

namespace orvandel {
namespace {

constexpr int kOutOfMemory = 4;
constexpr int kFileError = 9;

template <typename T>
bool Write(const T* values, std::size_t count, std::FILE* file) {
  return count == 0 || std::fwrite(values, sizeof(T), count, file) == count;
}

/// A short read goes undetected: what the file lacks stays 0.
template <typename T>
void Read(T* values, std::size_t count, std::FILE* file) {
  [[maybe_unused]] const std::size_t got = std::fread(values, sizeof(T), count, file);
}

bool WriteSet(CCrawler& set, std::FILE* file) {
  const auto records = Records(set);
  const auto num_contours = static_cast<std::int32_t>(records.size());
  const std::int32_t num_points = NumPoints(set);
  const auto points = static_cast<std::size_t>(num_points);
  return Write(&num_contours, 1, file) && Write(&num_points, 1, file) &&
         Write(&set.edge_threshold, 1, file) && Write(records.data(), records.size(), file) &&
         Write(set.x, points, file) && Write(set.y, points, file) && Write(set.g, points, file) &&
         Write(set.f, points, file);
}

}  // namespace
}  // namespace orvandel

int ctd_save(void* handle, char* path) {
  std::FILE* file = path != nullptr ? std::fopen(path, "wb") : nullptr;
  if (file == nullptr) return orvandel::kFileError;
  const bool written = orvandel::WriteSet(orvandel::SetOf(handle), file);
  const bool closed = std::fclose(file) == 0;  // the last write may fall short only here
  return written && closed ? 0 : orvandel::kFileError;
}

int ctd_load(void* handle, char* path) {
  std::FILE* file = path != nullptr ? std::fopen(path, "rb") : nullptr;
  if (file == nullptr) return orvandel::kFileError;

  CCrawler& set = orvandel::SetOf(handle);
  orvandel::FreeArrays(set);
  set.contour_count = set.point_count = set.edge_threshold = 0;
  orvandel::Read(&set.contour_count, 1, file);
  orvandel::Read(&set.point_count, 1, file);
  orvandel::Read(&set.edge_threshold, 1, file);

  orvandel::PointArrays points;
  auto records = orvandel::AllocateZeros<ContourRecord>(set.contour_count);
  // The file stays open on this way out, which only counts that no memory holds lead to.
  if (!records || !points.Allocate(set.point_count)) return orvandel::kOutOfMemory;

  const auto num_points = static_cast<std::size_t>(set.point_count);
  orvandel::Read(records.get(), static_cast<std::size_t>(set.contour_count), file);
  orvandel::Read(points.x.get(), num_points, file);
  orvandel::Read(points.y.get(), num_points, file);
  orvandel::Read(points.g.get(), num_points, file);
  orvandel::Read(points.f.get(), num_points, file);
  std::fclose(file);

  points.MoveInto(set);
  set.contours = records.release();
  set.point_capacity = set.point_count;
  set.contour_capacity = set.contour_count;
  return 0;
}
