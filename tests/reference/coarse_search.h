#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvandel::reference {

/// A position with the votes of all points.
struct Position {
  int x = 0;
  int y = 0;
  int votes = 0;

  friend bool operator==(const Position&, const Position&) = default;
};

/// Response maps, of which a point at (x, y) reads maps[origin + offset + y * stride + x].
struct Maps {
  std::vector<std::uint8_t> votes;
  int origin = 0;
  int stride = 0;

  /// The sum of the first `num_points` points.
  int SumAt(int x, int y, const std::vector<int>& offsets, int num_points) const {
    int sum = 0;
    for (int p = 0; p < num_points; ++p)
      sum += votes[static_cast<std::size_t>(origin + offsets[static_cast<std::size_t>(p)] +
                                            y * stride + x)];
    return sum;
  }
};

/// The positions of rows `first_row` to `end_row` - 1 that have what is asked after all points. They are looked at in blocks of
/// 32 columns of two rows; a block counts where after each stage some position of it has what is asked there. The last
/// block of a row ends with the row, and so does the last pair of rows, where there is room for a whole one before.
///
/// @param stage_ends  points that each stage ends with
/// @param asked       by stage
inline std::vector<Position> Scan(const Maps& maps, int width, int first_row, int end_row,
                                  const std::vector<int>& offsets,
                                  const std::vector<int>& stage_ends,
                                  const std::vector<int>& asked) {
  std::vector<Position> found;
  for (int y = first_row; y < end_row; y += 2) {
    const int top = y + 1 == end_row ? std::max(y - 1, 0) : y;
    for (int x = 0; x < width; x += 32) {
      const int left = std::min(x, std::max(width - 32, 0));
      bool stays = true;
      for (std::size_t stage = 0; stage < asked.size(); ++stage) {
        bool any = false;
        for (int i = 0; i < 64; ++i)
          any = any ||
                maps.SumAt(left + i % 32, top + i / 32, offsets, stage_ends[stage]) >= asked[stage];
        stays = stays && any;
      }
      if (!stays) continue;
      for (int row = y; row < std::min(y + 2, end_row); ++row) {
        for (int column = x; column < std::min(x + 32, width); ++column) {
          const int votes = maps.SumAt(column, row, offsets, stage_ends.back());
          if (votes >= asked.back()) found.push_back({column, row, votes});
        }
      }
    }
  }
  return found;
}

}  // namespace orvandel::reference
