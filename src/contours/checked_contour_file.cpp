#include "contours/checked_contour_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>
#include <utility>
#include <vector>

namespace orvandel {
namespace {

using Header = ContourFileHeader;

struct Contents {
  Header header;
  ContourSet contours;

  std::span<const ContourRecord> Records() const { return contours.View().records; }
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
bool Read(std::span<T> values, std::FILE* file) {
  return std::fread(values.data(), sizeof(T), values.size(), file) == values.size();
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
  if (!Read(std::span(&header, 1), file))
    return Error(ContourFileFault::kCannotRead, "cannot be read");
  if (const auto error = CheckLength(header, length); error.IsError()) return error;

  ContourSet& contours = contents.contours;
  PointArrays& points = contours.points;
  contours.records = AllocateUnset<ContourRecord>(header.num_contours);
  if (!contours.records || !points.AllocateUnset(header.num_points))
    return Error(ContourFileFault::kOutOfMemory, "no memory for %lld contours of %lld points",
                 header.num_contours, header.num_points);
  contours.num_contours = header.num_contours;

  const ContourSetView all = contours.View();
  const bool all_read = Read(all.records, file) && Read(all.x, file) && Read(all.y, file) &&
                        Read(all.g, file) && Read(all.f, file);
  return all_read ? ContourFileError{} : Error(ContourFileFault::kCannotRead, "cannot be read");
}

ContourFileError CheckRecords(const Contents& contents) {
  const auto records = contents.Records();
  for (std::size_t i = 0; i < records.size(); ++i) {
    const ContourRecord& record = records[i];
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
  const auto in_file = contents.Records();
  std::vector<ContourRecord> records(in_file.begin(), in_file.end());
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
  const ContourSetView points = contents.contours.View();
  for (std::size_t k = 0; k < points.NumPoints(); ++k) {
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

double LengthOf(const ContourView& contour) {
  double length = 0.0;
  for (std::size_t k = 1; k < contour.Size(); ++k) {
    const double dx = contour.x[k] - contour.x[k - 1];
    const double dy = contour.y[k] - contour.y[k - 1];
    length += std::sqrt(dx * dx + dy * dy);
  }
  return length;
}

ContourFileError CheckSpread(const Contents& contents) {
  const ContourSetView contours = contents.contours.View();
  for (std::size_t i = 0; i < contours.NumContours(); ++i) {
    const std::int32_t size = contours.records[i].size;
    const double length = LengthOf(contours[i]);
    if (length > kMostPixelsPerPoint * size)
      return Error(ContourFileFault::kSpread, "contour %lld has %lld points on %lld pixels", i,
                   size, length);
  }
  return {};
}

ContourFileError Check(const Contents& contents) {
  for (const auto check : {CheckRecords, CheckPartition, CheckPoints, CheckSpread}) {
    if (const auto error = check(contents); error.IsError()) return error;
  }
  return {};
}

ContourFileError ReadChecked(const char* path, Contents& contents) {
  std::uintmax_t length = 0;
  const OpenFile file = Open(path, length);
  if (!file) return Error(ContourFileFault::kCannotOpen, "cannot be opened");
  if (length < sizeof(Header))
    return Error(ContourFileFault::kNoHeader,
                 "%lld bytes long, but a contour file has %lld or more", length, sizeof(Header));
  if (const auto error = ReadContents(file.get(), length, contents); error.IsError()) return error;
  return Check(contents);
}

}  // namespace

ContourFileError ReadContourFileChecked(const char* path, ContourSet& contours,
                                        std::int32_t& edge_threshold) noexcept {
  try {
    Contents contents;
    if (const auto error = ReadChecked(path, contents); error.IsError()) return error;
    contours = std::move(contents.contours);
    edge_threshold = contents.header.edge_threshold;
    return {};
  } catch (const std::bad_alloc&) {
    return Error(ContourFileFault::kOutOfMemory, "no memory for its records");
  } catch (...) {  // a path that is no valid text
    return Error(ContourFileFault::kCannotOpen, "cannot be opened");
  }
}

}  // namespace orvandel
