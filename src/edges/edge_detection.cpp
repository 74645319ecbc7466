#include "edges/edge_detection.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <new>
#include <span>

#include "base/rounding.h"
#include "edges/edge_sweep.h"
#include "edges/gradient_tables.h"
#include "orvandel/classic/edge_record.h"
#include "platform/prefetch.h"

namespace orvandel {
namespace {

/// Fewer rows or columns hold no pixel with the neighbourhood that smoothing and gradient need.
constexpr int kLeastSize = 5;

/// Radians of the gradient direction codes, in [-pi, pi): half turns either way.
const std::array<double, 256> kRadians = [] {
  std::array<double, 256> radians{};
  for (std::size_t code = 0; code < radians.size(); ++code)
    radians[code] = static_cast<std::int8_t>(code) * kTwoPi / 256;
  return radians;
}();

void ClearEdges(const GreyRows& image, CEdgeImgComplement* edges) {
  for (int y = 0; y < image.height; ++y)
    std::memset(image.rows[y], 0, static_cast<std::size_t>(image.width));
  if (edges != nullptr && edges->valid != nullptr) {
    std::memset(edges->valid, 0, static_cast<std::size_t>(edges->map_size));
  }
}

/// Takes edge points into a record. One of another size than the image gets them by position.
class PointRecorder {
 public:
  PointRecorder(const GreyRows& image, CEdgeImgComplement* edges) : edges_(edges) {
    same_size_ = edges != nullptr && edges->valid != nullptr && edges->width == image.width &&
                 edges->height == image.height;
    if (edges != nullptr && edges->valid != nullptr && !same_size_) {
      std::memset(edges->valid, 0, static_cast<std::size_t>(edges->map_size));
    }
  }

  /// Prefetches the cells of a row's points while the points are worked out: three cache lines each, which
  /// lie far from those of the row before.
  void Prefetch(int y, std::span<const std::uint16_t> columns) const {
    if (!same_size_) return;
    const std::size_t first_cell = FirstCell(y);
    for (const std::uint16_t column : columns) {
      PrefetchForWrite(edges_->x + first_cell + column);
      PrefetchForWrite(edges_->y + first_cell + column);
      PrefetchForWrite(edges_->g + first_cell + column);
    }
  }

  void AddRow(int y, std::span<const EdgePoint> points) {
    if (same_size_) {
      StoreRow(y, points);
    } else if (edges_ != nullptr) {
      for (const EdgePoint& p : points)
        edges_->Store(X(p), Y(y, p), Radians(p));
    }
  }

 private:
  // 256ths of a pixel are exact.
  static double X(const EdgePoint& p) { return (p.column * 256 + p.sub_x) * (1 / 256.0); }
  static double Y(int y, const EdgePoint& p) { return (y * 256 + p.sub_y) * (1 / 256.0); }
  static double Radians(const EdgePoint& p) {
    return kRadians[static_cast<std::size_t>(p.direction)];
  }

  std::size_t FirstCell(int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(edges_->width);
  }

  void StoreRow(int y, std::span<const EdgePoint> points) {
    const std::size_t first_cell = FirstCell(y);
    double* const x_row = edges_->x + first_cell;
    double* const y_row = edges_->y + first_cell;
    double* const g_row = edges_->g + first_cell;
    std::uint8_t* const valid_row = edges_->valid + first_cell;
    std::memset(valid_row, 0, static_cast<std::size_t>(edges_->width));
    for (const EdgePoint& p : points) {
      x_row[p.column] = X(p);
      y_row[p.column] = Y(y, p);
      g_row[p.column] = Radians(p);
      valid_row[p.column] = 1;
    }
    const auto count = static_cast<std::uint32_t>(edges_->count) + points.size();  // wraps
    edges_->count = static_cast<std::int32_t>(static_cast<std::uint32_t>(count));
  }

  CEdgeImgComplement* edges_;
  bool same_size_;
};

void SweepImage(const GreyRows& image, int threshold, const GradientTables& tables,
                CEdgeImgComplement* edges) {
  EdgeSweep sweep(image, threshold, tables);
  PointRecorder recorder(image, edges);
  for (int y = 0; y < image.height; ++y) {
    sweep.NextRow();
    recorder.Prefetch(y, sweep.Columns());
    recorder.AddRow(y, sweep.LocatePoints());
    // The sweep has done with this row of the image.
    std::memcpy(image.rows[y], sweep.Peaks(), static_cast<std::size_t>(image.width));
  }
}

}  // namespace

bool DetectEdges(const GreyRows& image, int threshold, CEdgeImgComplement* edges) {
  if (image.height < kLeastSize) return true;
  const GradientTables* tables = AcquireGradientTables();
  if (tables == nullptr) return false;
  if (image.width < kLeastSize) {
    ClearEdges(image, edges);
    return true;
  }
  try {
    SweepImage(image, threshold, *tables, edges);
  } catch (const std::bad_alloc&) {
    return false;  // only before anything was written
  }
  return true;
}

}  // namespace orvandel
