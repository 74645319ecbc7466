#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "fuzz/byte_source.h"
#include "fuzz/host_image.h"
#include "tests/support/uniform_random.h"

namespace orvandel::fuzz {

/// What a few bytes paint: rectangles over each other on a ground.
class Painting {
 public:
  explicit Painting(ByteSource& source) : ground_(source.Byte()) {
    const int num_rectangles = source.Byte() % 8;
    for (int i = 0; i < num_rectangles; ++i) {
      const int left = source.Byte();
      const int top = source.Byte();
      const int width = 1 + source.Byte();
      const int height = 1 + source.Byte();
      rectangles_.push_back({left, top, left + width, top + height, source.Byte()});
    }
  }

  /// The grey at a point, `ground` where nothing is painted.
  int GreyAt(double x, double y, int ground) const {
    int grey = ground;
    for (const Rectangle& r : rectangles_) {
      if (x >= r.left - 0.5 && x < r.right - 0.5 && y >= r.top - 0.5 && y < r.bottom - 0.5)
        grey = r.grey;
    }
    return grey;
  }
  int Ground() const { return ground_; }

 private:
  struct Rectangle {
    int left, top, right, bottom, grey;
  };
  int ground_;
  std::vector<Rectangle> rectangles_;
};

/// A painting seen somewhere else: turned and scaled about a point of it.
struct Sight {
  double x = 0, y = 0;  ///< where that point lies in the image, pixels
  double angle = 0;     ///< radians
  double scale = 1;
  double from_x = 0, from_y = 0;  ///< the point in the painting
  bool is_inverted = false;

  static Sight From(ByteSource& source, int width, int height, double from_x, double from_y) {
    Sight sight;
    sight.x = source.Byte() % width;
    sight.x += source.SignedByte() / 256.0;
    sight.y = source.Byte() % height;
    sight.y += source.SignedByte() / 256.0;
    sight.angle = source.SignedByte() * (3.2 / 128);
    const int kind = source.Byte();
    sight.scale = 0.4 + (kind % 128) / 64.0;
    sight.is_inverted = kind >= 192;
    sight.from_x = from_x;
    sight.from_y = from_y;
    return sight;
  }
};

/// Paints what is seen of a painting over an image of 8-bit greys, with soft edges: each pixel is the mean of 3 x 3 places.
inline void Paint(const Painting& painting, const Sight& sight, int width, int height,
                  std::vector<double>& greys) {
  constexpr int kPlaces = 3;
  const double c = std::cos(sight.angle) / sight.scale;
  const double s = std::sin(sight.angle) / sight.scale;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      double& grey = greys[static_cast<std::size_t>(y * width + x)];
      double sum = 0;
      for (int i = 0; i < kPlaces * kPlaces; ++i) {
        const double dx = x + (i % kPlaces + 0.5) / kPlaces - 0.5 - sight.x;
        const double dy = y + (i / kPlaces + 0.5) / kPlaces - 0.5 - sight.y;
        constexpr int kNothing = -1;
        const int painted = painting.GreyAt(sight.from_x + c * dx + s * dy,
                                            sight.from_y - s * dx + c * dy, kNothing);
        sum += painted == kNothing ? grey : sight.is_inverted ? 255 - painted : painted;
      }
      grey = sum / (kPlaces * kPlaces);
    }
  }
}

inline HostLayout LayoutFrom(ByteSource& source) {
  const int byte = source.Byte();
  HostLayout layout;
  layout.bits_per_pixel = byte % 2 == 0 ? 8 : 16;
  layout.is_bottom_up = byte / 2 % 2 != 0;
  layout.gap = byte / 4 % 8;
  return layout;
}

/// Greys with noise in a host's image: those of 16 bits are multiplied.
inline HostImage Developed(const std::vector<double>& greys, int width, int height,
                           ByteSource& source) {
  HostImage image(width, height, LayoutFrom(source));
  const int noise = source.Byte() % 64;
  const int factor = image.MostGrey() == 255 ? 1 : 1 + source.Byte();
  test::UniformRandom random(static_cast<std::uint32_t>(source.Byte()));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double grey = greys[static_cast<std::size_t>(y * width + x)];
      const double noisy = factor * (grey + random.Real(-noise, noise)) + 0.5;
      image.Set(x, y, static_cast<int>(std::clamp(noisy, 0.0, image.MostGrey() + 0.0)));
    }
  }
  return image;
}

}  // namespace orvandel::fuzz
