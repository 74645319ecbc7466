#include "examples/render/coverage.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace orvandel::render {
namespace {

/// Mean of max(t - x, 0) over x between `low` and `high`.
double MeanRamp(double t, double low, double high) {
  if (t <= low) return 0;
  if (t >= high) return t - (low + high) / 2;
  return (t - low) * (t - low) / (2 * (high - low));
}

/// The pixel whose span holds a coordinate, brought into [0, count].
int PixelAt(double coordinate, int count) {
  return static_cast<int>(std::clamp(std::floor(coordinate), 0.0, static_cast<double>(count)));
}

/// Adds signed edges to a grid of differences. Coordinates here are those of the grid's own corner:
/// pixel (column, row) spans [column, column + 1] x [row, row + 1].
class EdgeAccumulator {
 public:
  explicit EdgeAccumulator(Coverage& coverage) : coverage_(coverage) {}

  void AddEdge(Point a, Point b, double sign) {
    if (a.y == b.y) return;
    if (a.y > b.y) {
      std::swap(a, b);
      sign = -sign;
    }
    const double x_per_row = (b.x - a.x) / (b.y - a.y);
    const int end_row = std::min(PixelAt(b.y, coverage_.height) + 1, coverage_.height);
    for (int row = PixelAt(a.y, coverage_.height); row < end_row; ++row) {
      const double y0 = std::max(a.y, static_cast<double>(row));
      const double y1 = std::min(b.y, static_cast<double>(row + 1));
      if (y1 <= y0) continue;
      AddPiece(row, a.x + (y0 - a.y) * x_per_row, a.x + (y1 - a.y) * x_per_row, sign * (y1 - y0));
    }
  }

 private:
  /// The piece of an edge within one row, from x0 to x1, `signed_height` of the row high.
  void AddPiece(int row, double x0, double x1, double signed_height) {
    const double low = std::min(x0, x1);
    const double high = std::max(x0, x1);
    double* differences = &coverage_.share[RowStart(row)];
    double previous = 0;  // share right of the edge in the pixel to the left
    int column = PixelAt(low, coverage_.width);
    for (; column < coverage_.width && column <= high; ++column) {
      const double share = MeanRamp(column + 1, low, high) - MeanRamp(column, low, high);
      differences[column] += signed_height * (share - previous);
      previous = share;
    }
    if (column < coverage_.width) differences[column] += signed_height * (1.0 - previous);
  }

  std::size_t RowStart(int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(coverage_.width);
  }

  Coverage& coverage_;
};

Outline Place(const Outline& outline, const Pose& image_from_part) {
  Outline placed;
  placed.reserve(outline.size());
  for (const Point& point : outline)
    placed.push_back(image_from_part * point);
  return placed;
}

/// The image's pixels that an outline in the image can touch, with all shares 0.
Coverage EmptyOver(const Outline& placed, Size image) {
  if (placed.empty()) return {};
  const auto by_x = [](Point a, Point b) { return a.x < b.x; };
  const auto by_y = [](Point a, Point b) { return a.y < b.y; };
  const auto [left, right] = std::minmax_element(placed.begin(), placed.end(), by_x);
  const auto [top, bottom] = std::minmax_element(placed.begin(), placed.end(), by_y);
  Coverage coverage;
  coverage.left = PixelAt(left->x + 0.5, image.width);
  coverage.top = PixelAt(top->y + 0.5, image.height);
  coverage.width = std::min(PixelAt(right->x + 0.5, image.width) + 1, image.width);
  coverage.width -= coverage.left;
  coverage.height = std::min(PixelAt(bottom->y + 0.5, image.height) + 1, image.height);
  coverage.height -= coverage.top;
  coverage.share.resize(static_cast<std::size_t>(coverage.width) *
                        static_cast<std::size_t>(coverage.height));
  return coverage;
}

void AddOutline(const Outline& placed, bool is_hole, Coverage& coverage) {
  if (coverage.share.empty()) return;
  const Point grid_corner{coverage.left - 0.5, coverage.top - 0.5};
  // Downward edges take away what lies right of them, when the outline runs clockwise.
  const double sign = (SignedArea(placed) > 0) == is_hole ? 1.0 : -1.0;
  EdgeAccumulator accumulator(coverage);
  Point from = placed.back() - grid_corner;
  for (const Point& point : placed) {
    const Point to = point - grid_corner;
    accumulator.AddEdge(from, to, sign);
    from = to;
  }
}

void SumAlongRows(Coverage& coverage) {
  std::size_t i = 0;
  for (int row = 0; row < coverage.height; ++row) {
    double sum = 0;
    for (int column = 0; column < coverage.width; ++column, ++i) {
      sum += coverage.share[i];
      coverage.share[i] = sum;
    }
  }
}

}  // namespace

double Coverage::At(int column, int row) const {
  const int x = column - left;
  const int y = row - top;
  if (x < 0 || y < 0 || x >= width || y >= height) return 0;
  return share[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x)];
}

double Coverage::Total() const {
  double total = 0;
  for (const double value : share)
    total += value;
  return total;
}

Coverage CoverShape(const Shape& shape, const Pose& image_from_part, Size image) {
  const Outline placed = Place(shape.outline, image_from_part);
  Coverage coverage = EmptyOver(placed, image);
  AddOutline(placed, /*is_hole=*/false, coverage);
  for (const Outline& hole : shape.holes)
    AddOutline(Place(hole, image_from_part), /*is_hole=*/true, coverage);
  SumAlongRows(coverage);
  return coverage;
}

}  // namespace orvandel::render
