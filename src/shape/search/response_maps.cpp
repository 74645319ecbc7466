#include "shape/search/response_maps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace orvandel::shape {
namespace {

using Votes = std::array<std::uint8_t, kDirectionBins>;
using VoteTable = std::array<Votes, kDirectionCodes>;

/// Votes for a direction that is off by this many codes of 5.6 degrees, as far as one half turn.
int VoteAt(int codes_off) {
  if (codes_off <= 3) return 4;  // 17 degrees: the bins are 22.5 degrees apart, rounding costs 11
  if (codes_off <= 5) return 3;
  if (codes_off <= 7) return 2;
  if (codes_off <= 9) return 1;
  return 0;
}

int CodesBetween(int a, int b) {
  const int apart = std::abs(a - b) % kDirectionCodes;
  return std::min(apart, kDirectionCodes - apart);
}

VoteTable MakeVoteTable(EdgeSign sign) {
  VoteTable table = {};
  for (int code = 0; code < kDirectionCodes; ++code) {
    for (int bin = 0; bin < kDirectionBins; ++bin) {
      const int same = CodesBetween(code, bin * (kDirectionCodes / kDirectionBins));
      const int reversed = kDirectionCodes / 2 - same;
      const int off = sign == EdgeSign::kSame       ? same
                      : sign == EdgeSign::kReversed ? reversed
                                                    : std::min(same, reversed);
      table[static_cast<std::size_t>(code)][static_cast<std::size_t>(bin)] =
          static_cast<std::uint8_t>(VoteAt(off));
    }
  }
  return table;
}

const VoteTable& VoteTableOf(EdgeSign sign) {
  static const std::array<VoteTable, 3> tables = {MakeVoteTable(EdgeSign::kSame),
                                                  MakeVoteTable(EdgeSign::kReversed),
                                                  MakeVoteTable(EdgeSign::kEither)};
  return tables[static_cast<std::size_t>(sign)];
}

/// Direction of a gradient that is not 0, in codes. The arc tangent of a ratio r up to 1 is close to
/// r (1 - 0.2714 (r - 1) ...); the polynomial is good to 0.3 degrees, a code is 5.6.
std::uint16_t DirectionCode(int gx, int gy) {
  const int across = std::abs(gx);
  const int down = std::abs(gy);
  const float ratio =
      static_cast<float>(std::min(across, down)) / static_cast<float>(std::max(across, down));
  const float radians = ratio * (0.9724f - 0.1919f * ratio * ratio);
  constexpr float kCodesPerRadian = 10.185916f;  // 64 / (2 pi)
  int code = static_cast<int>(radians * kCodesPerRadian + 0.5f);
  if (down > across) code = kDirectionCodes / 4 - code;
  if (gx < 0) code = kDirectionCodes / 2 - code;
  if (gy < 0) code = kDirectionCodes - code;
  return static_cast<std::uint16_t>(code % kDirectionCodes);
}

int SquareOf(std::int32_t packed) {
  const int gx = GradientX(packed);
  const int gy = GradientY(packed);
  return gx * gx + gy * gy;
}

/// Step to the neighbour along the gradient, of eight.
std::ptrdiff_t NeighbourAlong(int gx, int gy, std::ptrdiff_t width) {
  const int across = std::abs(gx);
  const int down = std::abs(gy);
  // The tangent of 22.5 degrees is 0.4142; 53 / 128 is 0.4141.
  const std::ptrdiff_t x = 128 * across > 53 * down ? 1 : 0;
  const std::ptrdiff_t y = 128 * down > 53 * across ? width : 0;
  return (gx < 0) == (gy < 0) ? x + y : x - y;
}

/// Raises each of a cell's votes to what an edge gives.
void RaiseCell(std::uint8_t* cell, const Votes& votes) {
  for (std::size_t bin = 0; bin < kDirectionBins; ++bin)
    cell[bin] = std::max(cell[bin], votes[bin]);
}

/// The votes of a table, and what is left of them at one and two cells' distance.
struct GradedVotes {
  explicit GradedVotes(const VoteTable& table) {
    for (std::size_t code = 0; code < kDirectionCodes; ++code) {
      for (std::size_t bin = 0; bin < kDirectionBins; ++bin) {
        for (int penalty = 0; penalty < 3; ++penalty)
          less[code][static_cast<std::size_t>(penalty)][bin] =
              static_cast<std::uint8_t>(std::max(table[code][bin] - penalty, 0));
      }
    }
  }
  std::array<std::array<Votes, 3>, kDirectionCodes> less;
};

}  // namespace

void FindSceneEdges(const GradientPlane& gradients, float least_strength,
                    std::vector<SceneEdge>& edges) {
  edges.clear();
  const auto least_square = static_cast<int>(least_strength * least_strength);
  const std::ptrdiff_t width = gradients.width;
  for (std::int32_t y = 1; y + 1 < gradients.height; ++y) {
    const std::int32_t* const row = gradients.Row(y);
    for (std::int32_t x = 1; x + 1 < gradients.width; ++x) {
      const int gx = GradientX(row[x]);
      const int gy = GradientY(row[x]);
      const int square = gx * gx + gy * gy;
      if (square <= least_square) continue;
      const std::ptrdiff_t step = NeighbourAlong(gx, gy, width);
      if (SquareOf(row[x - step]) > square || SquareOf(row[x + step]) >= square) continue;
      edges.push_back(
          {static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(y), DirectionCode(gx, gy)});
    }
  }
}

void ResponseMaps::Build(std::span<const SceneEdge> edges, bool is_pooled, std::int32_t width,
                         std::int32_t height, std::int32_t frame, EdgeSign sign) {
  static const std::array<GradedVotes, 3> votes = {GradedVotes(VoteTableOf(EdgeSign::kSame)),
                                                   GradedVotes(VoteTableOf(EdgeSign::kReversed)),
                                                   GradedVotes(VoteTableOf(EdgeSign::kEither))};
  const GradedVotes& table = votes[static_cast<std::size_t>(sign)];
  width_ = width;
  height_ = height;
  // One more cell all around takes the votes of edges at the border.
  const std::int32_t columns = width + 2;
  const std::int32_t rows = height + 2;
  cells_.assign(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows) * kDirectionBins,
                0);
  const auto cell = [this, columns](std::int32_t x, std::int32_t y) {
    return cells_.data() + static_cast<std::size_t>((y + 1) * columns + x + 1) * kDirectionBins;
  };
  for (const SceneEdge& edge : edges) {
    const auto& less = table.less[edge.code];
    const std::int32_t x = is_pooled ? edge.x / 2 : edge.x;
    const std::int32_t y = is_pooled ? edge.y / 2 : edge.y;
    if (x >= width || y >= height) continue;
    RaiseCell(cell(x, y), less[0]);
    if (is_pooled) {
      // The ring around a cell is one pixel of the finer plane wide: the cells next to the edge's half.
      const std::int32_t beside = edge.x % 2 == 0 ? x - 1 : x + 1;
      const std::int32_t beyond = edge.y % 2 == 0 ? y - 1 : y + 1;
      RaiseCell(cell(beside, y), less[1]);
      RaiseCell(cell(x, beyond), less[1]);
      RaiseCell(cell(beside, beyond), less[2]);
    } else {
      for (const std::int32_t side : {-1, 1}) {
        RaiseCell(cell(x + side, y), less[1]);
        RaiseCell(cell(x, y + side), less[1]);
        RaiseCell(cell(x + side, y + side), less[2]);
        RaiseCell(cell(x + side, y - side), less[2]);
      }
    }
  }

  // Rows are read in whole blocks beyond the last position.
  constexpr std::int32_t kBlock = 32;
  stride_ = (width + kBlock - 1) / kBlock * kBlock + 2 * frame;
  plane_size_ = stride_ * (height + 1 + 2 * frame);
  first_ = frame * stride_ + frame;
  planes_.assign(static_cast<std::size_t>(plane_size_) * (kDirectionBins + 1) + kBlock, 0);
  for (std::int32_t y = 0; y < height; ++y) {
    const std::uint8_t* const row = cell(0, y);
    for (std::int32_t bin = 0; bin < kDirectionBins; ++bin) {
      std::uint8_t* const to = planes_.data() + first_ + bin * plane_size_ + y * stride_;
      for (std::int32_t x = 0; x < width; ++x)
        to[x] = row[x * kDirectionBins + bin];
    }
  }
}

}  // namespace orvandel::shape
