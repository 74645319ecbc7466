// The reader for contour files of unknown origin.

#include "orvandel/classic/checked_contour_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>
#include <vector>

#include "contours/point_arrays.h"

namespace orvandel {
namespace {

struct Header {
  std::int32_t num_contours;
  std::int32_t num_points;
  std::int32_t edge_threshold;
};
static_assert(sizeof(Header) == 12, "contour files begin with three 32-bit integers");

struct Contents {
  Header header{};
  HeapArray<ContourRecord> records;
  PointArrays points;

  std::size_t NumContours() const { return static_cast<std::size_t>(header.num_contours); }
  std::size_t NumPoints() const { return static_cast<std::size_t>(header.num_points); }
};

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

/// `format` has a %lld for each number.
template <typename... Numbers>
ContourFileError Error(ContourFileFault fault, const char* format, Numbers... numbers) {
  ContourFileError error;
  error.fault = fault;
  if constexpr (sizeof...(numbers) == 0)
    std::snprintf(error.text, sizeof error.text, "%s", format);
  else
    std::snprintf(error.text, sizeof error.text, format, static_cast<long long>(numbers)...);
  return error;
}

/// A pipe or a device has no length to hold the counts against.
OpenFile Open(const char* path, std::uintmax_t& length) {
  if (path == nullptr) return nullptr;
  std::error_code error;
  const std::filesystem::path file = path;
  if (!std::filesystem::is_regular_file(file, error)) return nullptr;
  length = std::filesystem::file_size(file, error);
  return OpenFile(error ? nullptr : std::fopen(path, "rb"));
}

template <typename T>
bool Read(T* values, std::size_t count, std::FILE* file) {
  return std::fread(values, sizeof(T), count, file) == count;
}

ContourFileError CheckLength(const Header& header, std::uintmax_t length) {
  if (header.num_contours < 0 || header.num_points < 0)
    return Error(ContourFileFault::kCount, "%lld contours of %lld points", header.num_contours,
                 header.num_points);
  constexpr std::int64_t kPointBytes = 3 * sizeof(double) + sizeof(std::uint32_t);
  constexpr std::int64_t kRecordBytes = sizeof(ContourRecord);
  const std::int64_t expected = std::int64_t{sizeof(Header)} + kRecordBytes * header.num_contours +
                                kPointBytes * header.num_points;
  if (length != static_cast<std::uintmax_t>(expected))
    return Error(ContourFileFault::kLength,
                 "%lld bytes long, but %lld contours of %lld points take %lld", length,
                 header.num_contours, header.num_points, expected);
  return {};
}

ContourFileError ReadContents(std::FILE* file, std::uintmax_t length, Contents& contents) {
  Header& header = contents.header;
  if (!Read(&header, 1, file)) return Error(ContourFileFault::kCannotRead, "cannot be read");
  if (const auto error = CheckLength(header, length); error.IsError()) return error;

  PointArrays& points = contents.points;
  contents.records = AllocateUnset<ContourRecord>(header.num_contours);
  if (!contents.records || !points.AllocateUnset(header.num_points))
    return Error(ContourFileFault::kOutOfMemory, "no memory for %lld contours of %lld points",
                 header.num_contours, header.num_points);

  const std::size_t num_points = contents.NumPoints();
  const bool all_read =
      Read(contents.records.get(), contents.NumContours(), file) &&
      Read(points.x.get(), num_points, file) && Read(points.y.get(), num_points, file) &&
      Read(points.g.get(), num_points, file) && Read(points.f.get(), num_points, file);
  return all_read ? ContourFileError{} : Error(ContourFileFault::kCannotRead, "cannot be read");
}

ContourFileError CheckRecords(const Contents& contents) {
  for (std::size_t i = 0; i < contents.NumContours(); ++i) {
    const ContourRecord& record = contents.records[i];
    if (record.size < 1 || record.start < 0 ||
        std::int64_t{record.start} + record.size > contents.header.num_points)
      return Error(ContourFileFault::kRecord, "contour %lld has %lld points from %lld on, of %lld",
                   i, record.size, record.start, contents.header.num_points);
    if (record.closed != 0 && record.closed != 1)
      return Error(ContourFileFault::kClosed, "the closed flag of contour %lld is %lld", i,
                   record.closed);
  }
  return {};
}

/// Every point belongs to exactly one contour. Records that shared their points could make a small
/// file stand for any number of points.
ContourFileError CheckPartition(const Contents& contents) {
  const ContourRecord* const first = contents.records.get();
  std::vector<ContourRecord> records(first, first + contents.NumContours());
  std::sort(records.begin(), records.end(),
            [](const ContourRecord& a, const ContourRecord& b) { return a.start < b.start; });
  std::int32_t next = 0;
  for (const ContourRecord& record : records) {
    if (record.start < next)
      return Error(ContourFileFault::kPartition, "point %lld belongs to two contours",
                   record.start);
    if (record.start > next) break;
    next += record.size;
  }
  if (next < contents.header.num_points)
    return Error(ContourFileFault::kPartition, "point %lld belongs to no contour", next);
  return {};
}

/// False for what is not a number, too.
bool IsWithin(double value, double limit) {
  return std::abs(value) <= limit;
}

ContourFileError CheckPoints(const Contents& contents) {
  const PointArrays& points = contents.points;
  for (std::size_t k = 0; k < contents.NumPoints(); ++k) {
    if (!IsWithin(points.x[k], kLargestContourCoordinate) ||
        !IsWithin(points.y[k], kLargestContourCoordinate))
      return Error(ContourFileFault::kCoordinate,
                   "the position of point %lld is not finite, or beyond %lld pixels", k,
                   kLargestContourCoordinate);
    if (!IsWithin(points.g[k], kLargestContourDirection))
      return Error(ContourFileFault::kDirection,
                   "the direction of point %lld is not finite, or beyond %lld radians", k,
                   kLargestContourDirection);
  }
  return {};
}

double LengthOf(const ContourRecord& record, const PointArrays& points) {
  double length = 0.0;
  const auto first = static_cast<std::size_t>(record.start);
  for (std::size_t k = first + 1; k < first + static_cast<std::size_t>(record.size); ++k) {
    const double dx = points.x[k] - points.x[k - 1];
    const double dy = points.y[k] - points.y[k - 1];
    length += std::sqrt(dx * dx + dy * dy);
  }
  return length;
}

ContourFileError CheckSpread(const Contents& contents) {
  for (std::size_t i = 0; i < contents.NumContours(); ++i) {
    const ContourRecord& record = contents.records[i];
    const double length = LengthOf(record, contents.points);
    if (length > kMostPixelsPerPoint * record.size)
      return Error(ContourFileFault::kSpread, "contour %lld has %lld points on %lld pixels", i,
                   record.size, length);
  }
  return {};
}

ContourFileError Check(const Contents& contents) {
  for (const auto check : {CheckRecords, CheckPartition, CheckPoints, CheckSpread}) {
    if (const auto error = check(contents); error.IsError()) return error;
  }
  return {};
}

void MoveInto(CCrawler& set, Contents& contents) {
  FreeArrays(set);
  contents.points.MoveInto(set);
  set.contours = contents.records.release();
  set.contour_count = set.contour_capacity = contents.header.num_contours;
  set.point_count = set.point_capacity = contents.header.num_points;
  set.edge_threshold = contents.header.edge_threshold;
}

ContourFileError Load(CCrawler& set, const char* path) {
  std::uintmax_t length = 0;
  const OpenFile file = Open(path, length);
  if (!file) return Error(ContourFileFault::kCannotOpen, "cannot be opened");
  if (length < sizeof(Header))
    return Error(ContourFileFault::kNoHeader,
                 "%lld bytes long, but a contour file has %lld or more", length, sizeof(Header));
  Contents contents;
  if (const auto error = ReadContents(file.get(), length, contents); error.IsError()) return error;
  if (const auto error = Check(contents); error.IsError()) return error;
  MoveInto(set, contents);
  return {};
}

}  // namespace

ContourFileError LoadContoursChecked(void* handle, const char* path) noexcept {
  try {
    return Load(SetOf(handle), path);
  } catch (const std::bad_alloc&) {
    return Error(ContourFileFault::kOutOfMemory, "no memory for its records");
  } catch (...) {  // a path that is no valid text
    return Error(ContourFileFault::kCannotOpen, "cannot be opened");
  }
}

}  // namespace orvandel
