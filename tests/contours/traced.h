#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "contours/contour_tracing.h"
#include "tests/contours/traced_values.h"
#include "tests/reference/crawl.h"

namespace orvandel::test {

constexpr int kAnySize = 1000000;

/// What following a drawn map gave: for every contour its pixels in order, and what is left set.
struct Traced {
  std::vector<std::vector<Pixel>> chains;
  std::vector<int> closed;
  Grid left;
};

/// Follows a map without sub-pixel data, so that points stand at their pixels.
inline Traced Trace(const std::vector<std::string>& rows, int min_size = 1,
                    int max_size = kAnySize) {
  const ImagePtr image = ImageOf(Drawn(rows));
  const ContourSet owner = TraceContours(RowsOf(*image), nullptr, min_size, max_size);
  const ContourSetView contours = owner.View();
  Traced traced;
  for (const ContourRecord& record : contours.records) {
    std::vector<Pixel> chain;
    for (int k = record.start; k < record.start + record.size; ++k) {
      const auto at = static_cast<std::size_t>(k);
      EXPECT_EQ(contours.g[at], 0.0);
      chain.push_back({static_cast<int>(contours.x[at]), static_cast<int>(contours.y[at])});
    }
    traced.chains.push_back(chain);
    traced.closed.push_back(record.closed);
  }
  traced.left = GridOf(*image);
  return traced;
}

inline bool IsBlank(const Grid& grid) {
  return grid == MakeGrid(Width(grid), Height(grid));
}

using Chain = std::vector<Pixel>;

/// The pixels of a row from one column to another, either way.
inline Chain RowOfPixels(int row, int from, int to) {
  Chain chain;
  const int step = from <= to ? 1 : -1;
  for (int column = from; column != to + step; column += step)
    chain.push_back({column, row});
  return chain;
}

/// The pixels of a column from one row to another, either way.
inline Chain ColumnOfPixels(int column, int from, int to) {
  Chain chain;
  const int step = from <= to ? 1 : -1;
  for (int row = from; row != to + step; row += step)
    chain.push_back({column, row});
  return chain;
}

inline Chain Joined(const std::vector<Chain>& parts) {
  Chain all;
  for (const Chain& part : parts)
    all.insert(all.end(), part.begin(), part.end());
  return all;
}

inline std::ostream& operator<<(std::ostream& out, const Pixel& p) {
  return out << '(' << p.column << ", " << p.row << ')';
}

}  // namespace orvandel::test
