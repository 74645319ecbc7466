#include "shape/search/response_maps.h"

#include <algorithm>
#include <array>
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

/// Cells of the rows around the one that edges are taken from; a further one to either side takes the votes of edges
/// at the border.
class CellRows {
 public:
  CellRows(std::int32_t width, std::vector<std::uint8_t>& cells)
      : row_size_(static_cast<std::size_t>(width + 2) * kDirectionBins), cells_(cells) {
    cells_.assign(kRows * row_size_, 0);
  }

  std::uint8_t* At(std::int32_t x, std::int32_t y) {
    return Row(y) + std::ptrdiff_t{x + 1} * kDirectionBins;
  }

  /// Makes room for row `y` in the place of the third last one.
  void Clear(std::int32_t y) { std::fill_n(Row(y), row_size_, std::uint8_t{0}); }

 private:
  static constexpr std::int32_t kRows = 3;
  std::uint8_t* Row(std::int32_t y) {
    return cells_.data() + static_cast<std::size_t>((y + kRows) % kRows) * row_size_;
  }

  std::size_t row_size_;
  std::vector<std::uint8_t>& cells_;
};

using LessVotes = std::array<Votes, 3>;

/// An edge of the plane one level finer. The ring around a cell is one pixel of that plane wide: the cells next to the edge's
/// half.
void AddPooled(const SceneEdge& edge, const LessVotes& less, CellRows& cells) {
  const std::int32_t x = edge.x / 2;
  const std::int32_t y = edge.y / 2;
  const std::int32_t beside = edge.x % 2 == 0 ? x - 1 : x + 1;
  const std::int32_t beyond = edge.y % 2 == 0 ? y - 1 : y + 1;
  RaiseCell(cells.At(x, y), less[0]);
  RaiseCell(cells.At(beside, y), less[1]);
  RaiseCell(cells.At(x, beyond), less[1]);
  RaiseCell(cells.At(beside, beyond), less[2]);
}

void AddUnpooled(const SceneEdge& edge, const LessVotes& less, CellRows& cells) {
  const std::int32_t x = edge.x;
  const std::int32_t y = edge.y;
  RaiseCell(cells.At(x, y), less[0]);
  for (const std::int32_t side : {-1, 1}) {
    RaiseCell(cells.At(x + side, y), less[1]);
    RaiseCell(cells.At(x, y + side), less[1]);
    RaiseCell(cells.At(x + side, y + side), less[2]);
    RaiseCell(cells.At(x + side, y - side), less[2]);
  }
}

const GradedVotes& GradedVotesOf(EdgeSign sign) {
  static const std::array<GradedVotes, 3> votes = {GradedVotes(VoteTableOf(EdgeSign::kSame)),
                                                   GradedVotes(VoteTableOf(EdgeSign::kReversed)),
                                                   GradedVotes(VoteTableOf(EdgeSign::kEither))};
  return votes[static_cast<std::size_t>(sign)];
}

}  // namespace

void ResponseMaps::Build(std::span<const SceneEdge> edges, bool is_pooled, std::int32_t width,
                         std::int32_t height, std::int32_t frame, EdgeSign sign) {
  Shape(width, height, frame);
  const ResponseKernels& kernels = ResponseKernelsOf(ActiveSimdLevel());
  const GradedVotes& table = GradedVotesOf(sign);
  CellRows cells(width, cells_);
  const std::int32_t unit = is_pooled ? 2 : 1;
  auto edge = edges.begin();
  // Edges raise cells up to one row away: a row is done when those of the next one are in.
  for (std::int32_t y = 0; y <= height; ++y) {
    cells.Clear(y + 1);
    for (; edge != edges.end() && edge->y < unit * (y + 1) && y < height; ++edge) {
      if (edge->x >= unit * width) continue;
      const LessVotes& less = table.less[edge->code];
      if (is_pooled)
        AddPooled(*edge, less, cells);
      else
        AddUnpooled(*edge, less, cells);
    }
    if (y == 0) continue;
    kernels.part_votes(cells.At(0, y - 1), width, planes_.data() + first_ + (y - 1) * stride_,
                       plane_size_);
  }
}

/// Frame and map of nothing are written only where the shape has changed.
void ResponseMaps::Shape(std::int32_t width, std::int32_t height, std::int32_t frame) {
  if (width == width_ && height == height_ && frame == frame_ && !planes_.empty()) return;
  // Positions are looked at in blocks of at least so many. The frame to the right of a row is that to the left of the next.
  constexpr std::int32_t kLeastColumns = 32;
  constexpr std::int32_t kLeastRows = 2;
  const std::ptrdiff_t stride = std::max(width, kLeastColumns) + frame;
  const std::ptrdiff_t plane_size = stride * (std::max(height, kLeastRows) + 2 * frame) + frame;
  // First what may fail for want of memory, so that the planes have the shape that is told of them.
  planes_.assign(static_cast<std::size_t>(plane_size) * (kDirectionBins + 1), 0);
  width_ = width;
  height_ = height;
  frame_ = frame;
  stride_ = stride;
  plane_size_ = plane_size;
  first_ = frame * stride + frame;
  outside_vote_ = 0;
}

void ResponseMaps::SetOutsideVote(std::uint8_t vote) {
  if (vote == outside_vote_) return;
  outside_vote_ = vote;
  for (std::int32_t bin = 0; bin < kDirectionBins; ++bin) {
    std::uint8_t* const plane = planes_.data() + bin * plane_size_;
    // From the end of a row of the grid to the beginning of the next one.
    std::uint8_t* from = plane;
    for (std::int32_t y = 0; y < height_; ++y) {
      std::uint8_t* const row = plane + first_ + y * stride_;
      std::fill(from, row, vote);
      from = row + width_;
    }
    std::fill(from, plane + plane_size_, vote);
  }
}

}  // namespace orvandel::shape
