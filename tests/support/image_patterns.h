#pragma once

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/grids.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {

/// A whole number in 0..limit-1.
inline int Below(UniformRandom& random, int limit) {
  return random.Integer(0, limit - 1);
}

struct NamedGrid {
  std::string name;
  Grid grid;
};

inline std::ostream& operator<<(std::ostream& out, const NamedGrid& named) {
  return out << named.name << ' ' << Width(named.grid) << 'x' << Height(named.grid);
}

template <typename Value>
Grid Painted(int width, int height, Value value) {
  Grid grid = MakeGrid(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      At(grid, x, y) = value(x, y);
  }
  return grid;
}

/// Overlapping soft spots of either sign on mid-grey: edges in all directions and of all strengths.
inline Grid Blobs(int width, int height, UniformRandom& random) {
  struct Blob {
    double x, y, radius, height;
  };
  std::vector<Blob> blobs;
  for (int i = 0; i < 3 + width * height / 150; ++i)
    blobs.push_back({double(Below(random, width)), double(Below(random, height)),
                     1.5 + Below(random, 50) / 10.0, Below(random, 400) - 200.0});
  return Painted(width, height, [&](int x, int y) {
    double sum = 128;
    for (const Blob& b : blobs)
      sum += b.height *
             std::exp(-(std::pow(x - b.x, 2) + std::pow(y - b.y, 2)) / (2 * b.radius * b.radius));
    return static_cast<int>(std::fmin(255, std::fmax(0, sum)));
  });
}

/// One image of each kind that an edge detector meets, of one size.
inline std::vector<NamedGrid> ImagePatterns(int width, int height, UniformRandom& random) {
  const int flat = Below(random, 256);
  const int dark = Below(random, 120);
  const int bright = dark + 1 + Below(random, 255 - dark);
  const int edge = Below(random, width + 1);
  const int tilt = Below(random, 9) - 4;
  return {
      {"noise", Painted(width, height, [&](int, int) { return Below(random, 256); })},
      {"faint noise", Painted(width, height, [&](int, int) { return 100 + Below(random, 12); })},
      {"black and white noise",
       Painted(width, height, [&](int, int) { return 255 * Below(random, 2); })},
      {"checkerboard", Painted(width, height, [](int x, int y) { return 255 * ((x + y) % 2); })},
      {"coarse checkerboard",
       Painted(width, height, [](int x, int y) { return 255 * ((x / 4 + y / 3) % 2); })},
      {"flat", Painted(width, height, [&](int, int) { return flat; })},
      {"vertical step",
       Painted(width, height, [&](int x, int) { return x < edge ? dark : bright; })},
      {"horizontal step",
       Painted(width, height, [&](int, int y) { return y < edge / 2 ? bright : dark; })},
      {"slanted step",
       Painted(width, height,
               [&](int x, int y) { return 4 * (x - edge) + tilt * y < 0 ? bright : dark; })},
      {"ramp", Painted(width, height, [&](int x, int y) { return (7 * x + 3 * y + flat) % 256; })},
      {"blobs", Blobs(width, height, random)},
  };
}

}  // namespace orvandel::test
