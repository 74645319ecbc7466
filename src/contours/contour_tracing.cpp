#include "contours/contour_tracing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <new>
#include <vector>

#include "contours/chain_following.h"
#include "platform/prefetch.h"

namespace orvandel {
namespace {

constexpr double kClosingDistance = 3.0;  // pixels

/// Where the edge pixels of an image lie to a fraction of a pixel.
class PixelLocator {
 public:
  PixelLocator(const GreyRows& map, const CEdgeImgComplement* edges) {
    const bool same_size = edges != nullptr && edges->valid != nullptr &&
                           edges->width == map.width && edges->height == map.height;
    edges_ = same_size ? edges : nullptr;
  }

  struct Place {
    double x;
    double y;
    double g;
  };

  /// Prefetches a pixel's cell.
  void Prefetch(ChainPixel p) const {
    if (edges_ == nullptr) return;
    const std::size_t cell = CellOf(p);
    PrefetchForRead(edges_->x + cell);
    PrefetchForRead(edges_->y + cell);
    PrefetchForRead(edges_->g + cell);
  }

  Place At(ChainPixel p) const {
    if (edges_ != nullptr) {
      const std::size_t cell = CellOf(p);
      if (edges_->valid[cell] != 0) return {edges_->x[cell], edges_->y[cell], edges_->g[cell]};
    }
    return {static_cast<double>(p.column), static_cast<double>(p.row), 0.0};
  }

 private:
  std::size_t CellOf(ChainPixel p) const {
    return static_cast<std::size_t>(edges_->width) * p.row + p.column;
  }

  const CEdgeImgComplement* edges_;
};

/// The first column from `column` on that is not 0; `width` when there is none.
int NextSet(const std::uint8_t* row, int column, int width) {
  constexpr int kWord = sizeof(std::uint64_t);
  for (; column + kWord <= width; column += kWord) {
    std::uint64_t word;
    std::memcpy(&word, row + column, sizeof(word));
    if (word != 0) break;
  }
  while (column < width && row[column] == 0)
    ++column;
  return column;
}

class Tracer {
 public:
  Tracer(const GreyRows& edge_map, const CEdgeImgComplement* edges)
      : map_(edge_map), follower_(edge_map), locator_(edge_map, edges) {}

  ContourSet TraceAll(int min_size, int max_size) {
    for (int row = 1; row < map_.height; ++row) {
      for (int column = NextSet(map_.rows[row], 1, map_.width); column < map_.width;
           column = NextSet(map_.rows[row], column + 1, map_.width)) {
        TraceChain({static_cast<std::uint16_t>(column), static_cast<std::uint16_t>(row)}, min_size,
                   max_size);
      }
    }
    return {LocatePoints(), CopyRecords(), static_cast<std::int32_t>(records_.size())};
  }

 private:
  void TraceChain(ChainPixel seed, int min_size, int max_size) {
    const std::size_t start = pixels_.size();
    // The seed stays set until the chain is finished, so that either pass can step back onto it.
    pixels_.push_back(seed);
    follower_.FollowFrom(seed, pixels_);
    const std::size_t forward = pixels_.size() - start;
    follower_.FollowFrom(seed, pixels_);
    const std::size_t backward = pixels_.size() - start - forward;
    map_.rows[seed.row][seed.column] = 0;

    const auto size = static_cast<std::int32_t>(forward + backward);
    if (size < min_size || size > max_size) {
      pixels_.resize(start);
      return;
    }
    const bool closed = EndsMeet(start, forward, backward);
    PutInOrder(start, forward, backward);
    records_.push_back({static_cast<std::int32_t>(start), size, closed ? 1 : 0});
  }

  /// Whether the two far ends of the chain meet; without a backward pass its seed is the other end.
  bool EndsMeet(std::size_t start, std::size_t forward, std::size_t backward) const {
    if (forward < 2) return false;
    const std::size_t forward_end = start + forward - 1;
    const std::size_t other_end = backward > 0 ? forward_end + backward : start;
    const auto a = locator_.At(pixels_[forward_end]);
    const auto b = locator_.At(pixels_[other_end]);
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    return std::sqrt(dx * dx + dy * dy) < kClosingDistance;
  }

  /// Brings the backward points, reversed, before the forward ones, so that the chain runs from end
  /// to end. A single backward point stays last: results depend on it.
  void PutInOrder(std::size_t start, std::size_t forward, std::size_t backward) {
    if (backward < 2) return;
    const auto first = pixels_.begin() + static_cast<std::ptrdiff_t>(start);
    const auto seam = first + static_cast<std::ptrdiff_t>(forward);
    std::reverse(seam, pixels_.end());
    std::rotate(first, seam, pixels_.end());
  }

  /// Reads the edge record in one go, so that many reads are under way at once.
  PointArrays LocatePoints() const {
    constexpr std::size_t kAhead = 16;
    PointArrays points;
    if (!points.AllocateUnset(static_cast<std::int64_t>(pixels_.size()))) throw std::bad_alloc();
    std::fill_n(points.f.get(), pixels_.size(), 0u);
    for (std::size_t i = 0; i < pixels_.size(); ++i) {
      if (i + kAhead < pixels_.size()) locator_.Prefetch(pixels_[i + kAhead]);
      const auto place = locator_.At(pixels_[i]);
      points.x[i] = place.x;
      points.y[i] = place.y;
      points.g[i] = place.g;
    }
    return points;
  }

  HeapArray<ContourRecord> CopyRecords() const {
    auto records = AllocateUnset<ContourRecord>(static_cast<std::int64_t>(records_.size()));
    if (!records) throw std::bad_alloc();
    std::copy(records_.begin(), records_.end(), records.get());
    return records;
  }

  GreyRows map_;
  ChainFollower follower_;
  PixelLocator locator_;
  std::vector<ChainPixel> pixels_;
  std::vector<ContourRecord> records_;
};

}  // namespace

ContourSet TraceContours(const GreyRows& edge_map, const CEdgeImgComplement* edges, int min_size,
                         int max_size) {
  return Tracer(edge_map, edges).TraceAll(min_size, max_size);
}

}  // namespace orvandel
