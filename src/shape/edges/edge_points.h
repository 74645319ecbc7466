#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orvandel::shape::edges {

/// A point on an edge, where the grey value changes fastest along the gradient.
struct EdgePoint {
  float x;  ///< pixels; (0, 0) is the centre of the top-left pixel, x right, y down
  float y;
  float direction;  ///< of the gradient, to the brighter side: radians in (-pi, pi], from x to y
  float strength;   ///< length of the gradient, grey levels per pixel
};

/// The edge points of an image, row by row from the top and from left to right within a row of
/// pixels. The storage only grows, so the points of the next image of that size need no allocation.
class EdgePoints {
 public:
  std::span<const EdgePoint> All() const { return {points_.get(), size_}; }

  /// The points of a row of pixels. Their y differs from the row by half a pixel at most.
  std::span<const EdgePoint> InRow(std::int32_t y) const {
    const auto row = static_cast<std::size_t>(y);
    return {points_.get() + row_begin_[row], row_begin_[row + 1] - row_begin_[row]};
  }
  std::int32_t NumRows() const { return static_cast<std::int32_t>(row_begin_.size()) - 1; }

  /// Forgets all points and rows.
  void Clear() {
    size_ = 0;
    num_announced_ = 0;
    row_begin_.assign(1, 0);
  }
  /// The next row will have so many points.
  /// @throws std::bad_alloc
  void AnnounceRow(std::size_t num_points) {
    num_announced_ += num_points;
    row_begin_.push_back(num_announced_);
  }
  /// Adds points, to be written by the caller: those of the rows announced, in their order.
  /// @throws std::bad_alloc
  EdgePoint* Append(std::size_t num_points) {
    if (capacity_ - size_ < num_points) Grow(num_points);
    EdgePoint* const first = points_.get() + size_;
    size_ += num_points;
    return first;
  }

 private:
  void Grow(std::size_t num_points);

  std::unique_ptr<EdgePoint[]> points_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
  std::size_t num_announced_ = 0;
  std::vector<std::size_t> row_begin_ = {0};
};

}  // namespace orvandel::shape::edges
