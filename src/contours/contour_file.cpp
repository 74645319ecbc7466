#include "contours/contour_file.h"

namespace orvandel {
namespace {

template <typename T>
bool Write(std::span<const T> values, std::FILE* file) {
  return values.empty() ||
         std::fwrite(values.data(), sizeof(T), values.size(), file) == values.size();
}

template <typename T>
void Read(T* values, std::int32_t count, std::FILE* file) {
  [[maybe_unused]] const std::size_t got =
      std::fread(values, sizeof(T), static_cast<std::size_t>(count), file);
}

bool WriteAll(const ContourSetView& contours, std::int32_t edge_threshold, std::FILE* file) {
  const ContourFileHeader header = {static_cast<std::int32_t>(contours.NumContours()),
                                    static_cast<std::int32_t>(contours.NumPoints()),
                                    edge_threshold};
  return Write(std::span(&header, 1), file) && Write<ContourRecord>(contours.records, file) &&
         Write<double>(contours.x, file) && Write<double>(contours.y, file) &&
         Write<double>(contours.g, file) && Write<std::uint32_t>(contours.f, file);
}

}  // namespace

bool WriteContourFile(const ContourSetView& contours, std::int32_t edge_threshold,
                      const char* path) {
  std::FILE* file = path != nullptr ? std::fopen(path, "wb") : nullptr;
  if (file == nullptr) return false;
  const bool written = WriteAll(contours, edge_threshold, file);
  const bool closed = std::fclose(file) == 0;  // the last write may fall short only here
  return written && closed;
}

ContourFileHeader ReadContourFileHeader(std::FILE* file) {
  ContourFileHeader header;
  for (std::int32_t* number : {&header.num_contours, &header.num_points, &header.edge_threshold})
    Read(number, 1, file);
  return header;
}

std::optional<ContourSet> ReadContourFileBody(const ContourFileHeader& header, std::FILE* file) {
  ContourSet contours;
  contours.records = AllocateZeros<ContourRecord>(header.num_contours);
  if (!contours.records || !contours.points.AllocateZeros(header.num_points)) return std::nullopt;
  contours.num_contours = header.num_contours;

  PointArrays& points = contours.points;
  Read(contours.records.get(), header.num_contours, file);
  Read(points.x.get(), header.num_points, file);
  Read(points.y.get(), header.num_points, file);
  Read(points.g.get(), header.num_points, file);
  Read(points.f.get(), header.num_points, file);
  return contours;
}

}  // namespace orvandel
