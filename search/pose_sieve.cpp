#include "search/pose_sieve.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace orvandel {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

/// An order of 0 .. count - 1 in which far-apart numbers follow each other: steps near the golden ratio.
/// The points of one contour tend to miss together, so such an order tells sooner.
std::vector<std::uint32_t> SpreadOrder(std::size_t count) {
  std::size_t step = std::max<std::size_t>(count * 610 / 987, 1);
  while (std::gcd(step, count) > 1)
    ++step;
  std::vector<std::uint32_t> order(count);
  std::size_t next = 0;
  for (std::uint32_t& number : order) {
    number = static_cast<std::uint32_t>(next);
    next = (next + step) % count;
  }
  return order;
}

}  // namespace

PoseSieve::PoseSieve(const CPattVerify& verifier, const CEdgeImgComplement* edges, Point reference)
    : num_points_(static_cast<std::size_t>(std::max(verifier.pointCount, 0))),
      order_(SpreadOrder(num_points_)),
      possible_(num_points_ + 1, 1),
      num_possible_(num_points_) {
  const ProbeRules rules(verifier);
  const int radius = rules.radius;
  if (edges != nullptr && edges->valid != nullptr) {
    reach_.emplace(*edges, rules);
    first_column_ = first_row_ = radius + 1;
    end_column_ = edges->width - radius - 1;
    end_row_ = edges->height - radius - 1;
  }
  FillBatches(verifier, reference);
  wanted_.resize(batches_.size());
}

void PoseSieve::FillBatches(const CPattVerify& verifier, Point reference) {
  Batch empty;
  empty.dx.fill(kNoNumber);
  empty.dy.fill(kNoNumber);
  empty.code.fill(0);
  empty.point.fill(static_cast<std::uint32_t>(num_points_));
  batches_.assign((num_points_ + kBatchSize - 1) / kBatchSize, empty);

  std::size_t place = 0;
  for (const std::uint32_t point : order_) {
    Batch& batch = batches_[place / kBatchSize];
    const std::size_t k = place++ % kBatchSize;
    batch.point[k] = point;
    batch.dx[k] = verifier.pointX[point] - reference.x;
    batch.dy[k] = verifier.pointY[point] - reference.y;
    const double direction = verifier.pointDir[point];
    all_have_codes_ = all_have_codes_ && HasTurnCode(direction);
    batch.code[k] = HasTurnCode(direction) ? TurnCodeOf(direction) : TurnCode{0};
  }
}

void PoseSieve::TurnTo(double angle) {
  can_sift_ = reach_ && all_have_codes_ && HasTurnCode(angle);
  turn_ = can_sift_ ? TurnCodeOf(angle) : TurnCode{0};
  num_wanted_ = 0;
}

bool PoseSieve::Sift(const PointMapper& mapper, std::int64_t max_impossible) {
  if (!can_sift_) {
    std::fill(possible_.begin(), possible_.end(), std::uint8_t{1});
    num_possible_ = num_points_;
    return true;
  }
  const std::size_t num_places = batches_.size() * kBatchSize;
  // The places without a point cannot have credit either.
  const std::int64_t most = max_impossible + static_cast<std::int64_t>(num_places - num_points_);
  num_possible_ = 0;
  for (std::size_t b = 0; b < batches_.size(); ++b) {
    num_possible_ += SiftBatch(b, mapper);
    const std::size_t num_sifted = (b + 1) * kBatchSize;
    if (static_cast<std::int64_t>(num_sifted - num_possible_) > most) return false;
  }
  return true;
}

std::size_t PoseSieve::SiftBatch(std::size_t batch, const PointMapper& mapper) {
  SquareIndices squares;
  FindSquares(batches_[batch], mapper, squares);
  const WantedSets& wanted = WantedBy(batch);
  const DirectionSet* sets = reach_->Sets();
  std::size_t num_possible = 0;
  for (std::size_t k = 0; k < kBatchSize; ++k) {
    const bool possible = (sets[squares[k]] & wanted[k]) != 0;
    num_possible += possible ? 1 : 0;
    possible_[batches_[batch].point[k]] = possible ? 1 : 0;
  }
  num_looks_ += kBatchSize;
  return num_possible;
}

/// The positions are those of the scorer, to the bit, so the squares hold its very pixels.
void PoseSieve::FindSquares(const Batch& batch, const PointMapper& mapper,
                            SquareIndices& squares) const {
  const double tx = mapper.tx();
  const double ty = mapper.ty();
  const double cosine = mapper.cosine();
  const double sine = mapper.sine();
  const auto stride = static_cast<std::int32_t>(reach_->Stride());
  const auto first_square = static_cast<std::int32_t>(reach_->IndexOf(0, 0));
  const auto outside = static_cast<std::int32_t>(reach_->EmptyIndex());
  for (std::size_t k = 0; k < kBatchSize; ++k) {
    const double column = tx + batch.dx[k] * cosine - batch.dy[k] * sine;
    const double row = ty + batch.dx[k] * sine + batch.dy[k] * cosine;
    const bool inside =
        (column >= first_column_) & (column < end_column_) & (row >= first_row_) & (row < end_row_);
    const auto x = static_cast<std::int32_t>(inside ? column : 0.0);
    const auto y = static_cast<std::int32_t>(inside ? row : 0.0);
    squares[k] = inside ? first_square + (y >> 1) * stride + (x >> 1) : outside;
  }
}

/// Worked out when a pose first comes as far as this batch.
const PoseSieve::WantedSets& PoseSieve::WantedBy(std::size_t batch) {
  for (; num_wanted_ <= batch; ++num_wanted_) {
    for (std::size_t k = 0; k < kBatchSize; ++k) {
      wanted_[num_wanted_][k] = ExpectedBins(batches_[num_wanted_].code[k], turn_);
    }
  }
  return wanted_[batch];
}

}  // namespace orvandel
