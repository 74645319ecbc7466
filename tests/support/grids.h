#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/image_ptr.h"
#include "tests/support/images.h"

namespace orvandel::test {

/// Whole numbers on a pixel grid, at [y][x]. What the readable second formulations work on.
using Grid = std::vector<std::vector<int>>;

inline Grid MakeGrid(int width, int height) {
  return Grid(static_cast<std::size_t>(height), std::vector<int>(static_cast<std::size_t>(width)));
}

inline int Width(const Grid& grid) {
  return grid.empty() ? 0 : static_cast<int>(grid[0].size());
}

inline int Height(const Grid& grid) {
  return static_cast<int>(grid.size());
}

inline int& At(Grid& grid, int x, int y) {
  return grid[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
}

inline int At(const Grid& grid, int x, int y) {
  return grid[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
}

inline Grid GridOf(const tImage& image) {
  Grid grid = MakeGrid(image.width, image.height);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x)
      At(grid, x, y) = image.row[y][x];
  }
  return grid;
}

inline ImagePtr ImageOf(const Grid& grid) {
  return MakeImage(Width(grid), Height(grid), [&](int x, int y) { return At(grid, x, y); });
}

/// A map drawn as text, one string a row: '.' and ' ' are 0, anything else 255.
inline Grid Drawn(const std::vector<std::string>& rows) {
  Grid grid = MakeGrid(static_cast<int>(rows.at(0).size()), static_cast<int>(rows.size()));
  for (int y = 0; y < Height(grid); ++y) {
    for (int x = 0; x < Width(grid); ++x) {
      const char mark = rows[static_cast<std::size_t>(y)].at(static_cast<std::size_t>(x));
      At(grid, x, y) = mark == '.' || mark == ' ' ? 0 : 255;
    }
  }
  return grid;
}

/// The map as text again, for messages: '#' where a pixel is not 0.
inline std::string Drawing(const Grid& grid) {
  std::string text;
  for (const std::vector<int>& row : grid) {
    for (const int value : row)
      text += value == 0 ? '.' : '#';
    text += '\n';
  }
  return text;
}

/// Columns become rows.
inline Grid Transposed(const Grid& grid) {
  Grid transposed = MakeGrid(Height(grid), Width(grid));
  for (int y = 0; y < Height(grid); ++y) {
    for (int x = 0; x < Width(grid); ++x)
      At(transposed, y, x) = At(grid, x, y);
  }
  return transposed;
}

}  // namespace orvandel::test
