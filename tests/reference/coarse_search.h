#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvandel::reference {

/// A position of two rows with the votes of all points.
struct Position {
  int x = 0;
  int row = 0;
  int votes = 0;

  friend bool operator==(const Position&, const Position&) = default;
};

/// What a position must have got after a stage, from the points outside its column and row: once more in plain
/// integers.
inline int VotesAsked(int full, int per_point, int least, int outside_column, int outside_row) {
  return std::max(full - per_point * (outside_column + outside_row), least) / 128;
}

/// The positions of two rows, by blocks of 32 columns, that have what is asked after all points; a block counts where after
/// each stage some position of it has what is asked there.
///
/// @param maps        all maps, of which a point at position x, y reads maps[origin + offset + y * stride + x]
/// @param stage_ends  points that each stage ends with
/// @param asked       by stage and column
inline std::vector<Position> ScanRows(const std::vector<std::uint8_t>& maps, int origin, int stride,
                                      const std::vector<int>& offsets,
                                      const std::vector<int>& stage_ends,
                                      const std::vector<std::vector<int>>& asked) {
  const int num_columns = static_cast<int>(asked[0].size());
  const auto votes_at = [&](int x, int row, int num_points) {
    int votes = 0;
    for (int p = 0; p < num_points; ++p)
      votes += maps[static_cast<std::size_t>(origin + offsets[static_cast<std::size_t>(p)] +
                                             row * stride + x)];
    return votes;
  };
  std::vector<Position> found;
  for (int block = 0; block < num_columns; block += 32) {
    bool stays = true;
    for (std::size_t stage = 0; stage < stage_ends.size(); ++stage) {
      bool any = false;
      for (int x = block; x < block + 32; ++x) {
        for (int row = 0; row < 2; ++row)
          any = any ||
                votes_at(x, row, stage_ends[stage]) >= asked[stage][static_cast<std::size_t>(x)];
      }
      stays = stays && any;
    }
    if (!stays) continue;
    for (int row = 0; row < 2; ++row) {
      for (int x = block; x < block + 32; ++x) {
        const int votes = votes_at(x, row, stage_ends.back());
        if (votes >= asked.back()[static_cast<std::size_t>(x)]) found.push_back({x, row, votes});
      }
    }
  }
  return found;
}

}  // namespace orvandel::reference
