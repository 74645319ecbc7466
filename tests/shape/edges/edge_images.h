#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "image/image_view.h"

namespace orvandel::test {

/// A grey image with pixels of its own, whose rows may lie further apart than they are long.
template <typename Pixel>
class OwnedImage {
 public:
  OwnedImage(int width, int height, int pixels_between_rows = 0)
      : width_(width),
        height_(height),
        pitch_(static_cast<std::size_t>(width + pixels_between_rows)),
        pixels_(pitch_ * static_cast<std::size_t>(height)) {}

  Pixel& At(int x, int y) {
    return pixels_[static_cast<std::size_t>(y) * pitch_ + static_cast<std::size_t>(x)];
  }
  Pixel At(int x, int y) const {
    return pixels_[static_cast<std::size_t>(y) * pitch_ + static_cast<std::size_t>(x)];
  }
  ImageViewOf<Pixel> View() const {
    return {pixels_.data(), width_, height_, static_cast<std::ptrdiff_t>(pitch_ * sizeof(Pixel))};
  }
  /// The same image, stored from the last row to the first.
  ImageViewOf<Pixel> BottomUpView() const {
    return {pixels_.data() + pitch_ * static_cast<std::size_t>(height_ - 1), width_, height_,
            -static_cast<std::ptrdiff_t>(pitch_ * sizeof(Pixel))};
  }
  int Width() const { return width_; }
  int Height() const { return height_; }

 private:
  int width_;
  int height_;
  std::size_t pitch_;  // pixels
  std::vector<Pixel> pixels_;
};

template <typename Pixel>
OwnedImage<Pixel> PaintedImage(int width, int height,
                               const std::function<double(int x, int y)>& grey) {
  OwnedImage<Pixel> image(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      image.At(x, y) = static_cast<Pixel>(std::lround(grey(x, y)));
  }
  return image;
}

/// An edge by its normal: the side that the normal points to is bright.
struct StraightEdge {
  double angle = 0;     ///< of the normal, radians
  double distance = 0;  ///< of the edge from the origin, along the normal
  double Signed(double x, double y) const {
    return std::cos(angle) * x + std::sin(angle) * y - distance;
  }
};

/// Share of the unit square around a point that lies on the bright side of an edge, in closed form.
/// @param depth  how far the point lies on the bright side.
inline double CoveredShare(double angle, double depth) {
  const double c = std::fabs(std::cos(angle));
  const double s = std::fabs(std::sin(angle));
  const double larger = std::fmax(c, s);
  const double smaller = std::fmin(c, s);
  const double far_corner = (larger + smaller) / 2;   // beyond it the edge misses the square
  const double near_corner = (larger - smaller) / 2;  // up to it the edge cuts opposite sides
  const double distance = std::fabs(depth);
  double share = 1;
  if (distance <= near_corner) {
    share = 0.5 + distance / larger;
  } else if (distance < far_corner) {
    share = 1 - std::pow(far_corner - distance, 2) / (2 * larger * smaller);
  }
  return depth < 0 ? 1 - share : share;
}

}  // namespace orvandel::test
