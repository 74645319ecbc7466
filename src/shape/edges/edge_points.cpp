#include "shape/edges/edge_points.h"

#include <algorithm>
#include <utility>

namespace orvandel::shape::edges {

void EdgePoints::Grow(std::size_t num_points) {
  const std::size_t capacity = std::max(2 * capacity_, size_ + num_points);
  // Left uninitialised: the detector writes each point once.
  std::unique_ptr<EdgePoint[]> points(new EdgePoint[capacity]);
  std::copy_n(points_.get(), size_, points.get());
  points_ = std::move(points);
  capacity_ = capacity;
}

}  // namespace orvandel::shape::edges
