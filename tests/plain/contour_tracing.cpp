#include "tests/plain/contour_tracing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

namespace orvandel::plain {
namespace {

struct Pixel {
  int column;
  int row;
};

/// Directions 0..7 clockwise on the screen, from +x.
constexpr std::array<Pixel, 8> kSteps = {
    {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}}};

/// Turns from the last direction, in the order they are tried: first to the left of it, then round
/// to the right. A turn by 5 is not among them.
constexpr std::array<int, 7> kTurns = {6, 7, 0, 1, 2, 3, 4};

/// A pass searches from its first pixel as if it had come from above.
constexpr int kFirstDirection = 2;

constexpr double kClosingDistance = 3.0;  // pixels

class Tracer {
 public:
  Tracer(tImage* edge_map, const CEdgeImgComplement* edges) : map_(edge_map) {
    const bool same_size = edges != nullptr && edges->valid != nullptr &&
                           edges->width == map_->width && edges->height == map_->height;
    edges_ = same_size ? edges : nullptr;

    // A map denser than this lets the buffers grow.
    const std::size_t area =
        map_->width < 1 || map_->height < 1
            ? 0
            : static_cast<std::size_t>(map_->width) * static_cast<std::size_t>(map_->height);
    traced_.x.reserve(area / 2);
    traced_.y.reserve(area / 2);
    traced_.g.reserve(area / 2);
    traced_.records.reserve(area / 4);
  }

  TracedContours TraceAll(int min_size, int max_size) {
    for (int row = 1; row < map_->height; ++row) {
      for (int column = 1; column < map_->width; ++column) {
        if (map_->row[row][column] != 0) TraceChain({column, row}, min_size, max_size);
      }
    }
    return std::move(traced_);
  }

 private:
  void TraceChain(Pixel seed, int min_size, int max_size) {
    const std::size_t start = NumPoints();
    // The seed stays set until the chain is finished, so that either pass can step back onto it.
    Record(seed);
    FollowFrom(seed);
    const std::size_t forward = NumPoints() - start;
    FollowFrom(seed);
    const std::size_t backward = NumPoints() - start - forward;
    const bool closed = EndsMeet(start, forward, backward);
    map_->row[seed.row][seed.column] = 0;

    const auto size = static_cast<std::int32_t>(forward + backward);
    if (size < min_size || size > max_size) {
      Truncate(start);
      return;
    }
    PutInOrder(start, forward, backward);
    traced_.records.push_back({static_cast<std::int32_t>(start), size, closed ? 1 : 0});
  }

  /// Takes and records neighbour after neighbour until there is none.
  void FollowFrom(Pixel pixel) {
    int direction = kFirstDirection;
    while (const auto next = FindNeighbour(pixel, direction)) {
      direction = *next;
      pixel = Step(pixel, direction);
      map_->row[pixel.row][pixel.column] = 0;
      Record(pixel);
    }
  }

  std::optional<int> FindNeighbour(Pixel pixel, int last_direction) const {
    for (const int turn : kTurns) {
      const int direction = (last_direction + turn) % 8;
      if (IsSet(Step(pixel, direction))) return direction;
    }
    return std::nullopt;
  }

  static Pixel Step(Pixel pixel, int direction) {
    const Pixel step = kSteps[static_cast<std::size_t>(direction)];
    return {pixel.column + step.column, pixel.row + step.row};
  }

  bool IsSet(Pixel pixel) const {
    if (pixel.column < 0 || pixel.column >= map_->width) return false;
    if (pixel.row < 0 || pixel.row >= map_->height) return false;
    return map_->row[pixel.row][pixel.column] != 0;
  }

  void Record(Pixel pixel) {
    const std::size_t cell =
        static_cast<std::size_t>(map_->width) * static_cast<std::size_t>(pixel.row) +
        static_cast<std::size_t>(pixel.column);
    const bool located = edges_ != nullptr && edges_->valid[cell] != 0;
    traced_.x.push_back(located ? edges_->x[cell] : pixel.column);
    traced_.y.push_back(located ? edges_->y[cell] : pixel.row);
    traced_.g.push_back(located ? edges_->g[cell] : 0.0);
  }

  /// Whether the two far ends of the chain meet; without a backward pass its seed is the other end.
  bool EndsMeet(std::size_t start, std::size_t forward, std::size_t backward) const {
    if (forward < 2) return false;
    const std::size_t forward_end = start + forward - 1;
    const std::size_t other_end = backward > 0 ? forward_end + backward : start;
    const double dx = traced_.x[forward_end] - traced_.x[other_end];
    const double dy = traced_.y[forward_end] - traced_.y[other_end];
    return std::sqrt(dx * dx + dy * dy) < kClosingDistance;
  }

  /// Brings the backward points, reversed, before the forward ones, so that the chain runs from end
  /// to end. A single backward point stays last: results depend on it.
  void PutInOrder(std::size_t start, std::size_t forward, std::size_t backward) {
    if (backward < 2) return;
    for (std::vector<double>* values : {&traced_.x, &traced_.y, &traced_.g}) {
      const auto first = values->begin() + static_cast<std::ptrdiff_t>(start);
      const auto seam = first + static_cast<std::ptrdiff_t>(forward);
      std::reverse(seam, values->end());
      std::rotate(first, seam, values->end());
    }
  }

  std::size_t NumPoints() const { return traced_.x.size(); }

  void Truncate(std::size_t num_points) {
    traced_.x.resize(num_points);
    traced_.y.resize(num_points);
    traced_.g.resize(num_points);
  }

  tImage* map_;
  const CEdgeImgComplement* edges_;
  TracedContours traced_;
};

}  // namespace

TracedContours TraceContours(tImage* edge_map, const CEdgeImgComplement* edges, int min_size,
                             int max_size) {
  return Tracer(edge_map, edges).TraceAll(min_size, max_size);
}

}  // namespace orvandel::plain
