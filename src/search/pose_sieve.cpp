#include "search/pose_sieve.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
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
      rules_(verifier),
      edges_(edges),
      kernels_(SieveKernelsOf(ActiveSimdLevel())),
      order_(SpreadOrder(num_points_)),
      num_possible_(num_points_) {
  MakeMap();
  FillBatches(verifier, reference);
  wanted_.resize(batches_.size());
  possible_.assign(batches_.size() * kSieveBatch, 1);
}

/// Without memory for it all goes on without a map, only slower.
void PoseSieve::MakeMap() {
  if (edges_ == nullptr || edges_->valid == nullptr) return;
  try {
    reach_.emplace(edges_->width, edges_->height, rules_);
  } catch (const std::bad_alloc&) {
    reach_.reset();
  }
}

void PoseSieve::FillBatches(const CPattVerify& verifier, Point reference) {
  SieveBatch empty;
  std::fill(std::begin(empty.dx), std::end(empty.dx), kNoNumber);
  std::fill(std::begin(empty.dy), std::end(empty.dy), kNoNumber);
  const std::size_t num_batches = (num_points_ + kSieveBatch - 1) / kSieveBatch;
  batches_.assign(num_batches, empty);
  codes_.assign(num_batches, Codes{});

  for (std::size_t place = 0; place < num_points_; ++place) {
    const std::uint32_t point = order_[place];
    SieveBatch& batch = batches_[place / kSieveBatch];
    batch.dx[place % kSieveBatch] = verifier.pointX[point] - reference.x;
    batch.dy[place % kSieveBatch] = verifier.pointY[point] - reference.y;
    const double direction = verifier.pointDir[point];
    all_have_codes_ = all_have_codes_ && HasTurnCode(direction);
    if (all_have_codes_) codes_[place / kSieveBatch][place % kSieveBatch] = TurnCodeOf(direction);
  }
}

void PoseSieve::TurnTo(double angle) {
  turn_has_code_ = HasTurnCode(angle);
  turn_ = turn_has_code_ ? TurnCodeOf(angle) : TurnCode{0};
  num_wanted_ = 0;
}

bool PoseSieve::Sift(const PointMapper& mapper, std::int64_t max_impossible) {
  if (!all_have_codes_ || !turn_has_code_ || !IsMapReady()) {
    std::fill(possible_.begin(), possible_.end(), std::uint8_t{1});
    num_possible_ = num_points_;
    return true;
  }
  // The places without a point cannot have credit either.
  const std::size_t num_empty = batches_.size() * kSieveBatch - num_points_;
  const std::int64_t most = max_impossible + static_cast<std::int64_t>(num_empty);
  const SieveFrame frame = FrameOf(mapper);
  num_possible_ = 0;
  for (std::size_t b = 0; b < batches_.size(); ++b) {
    num_possible_ += SiftBatch(b, frame);
    const std::size_t num_sifted = (b + 1) * kSieveBatch;
    if (static_cast<std::int64_t>(num_sifted - num_possible_) > most) return false;
  }
  return true;
}

/// The map is filled when the first pose comes: many scenes propose none.
bool PoseSieve::IsMapReady() {
  if (!reach_) return false;
  if (!is_map_filled_) reach_->Fill(*edges_);
  is_map_filled_ = true;
  return true;
}

SieveFrame PoseSieve::FrameOf(const PointMapper& mapper) const {
  const int radius = rules_.radius;
  SieveFrame frame;
  frame.tx = mapper.tx();
  frame.ty = mapper.ty();
  frame.cosine = mapper.cosine();
  frame.sine = mapper.sine();
  frame.first_column = frame.first_row = radius + 1;
  frame.end_column = edges_->width - radius - 1;
  frame.end_row = edges_->height - radius - 1;
  frame.first_square = static_cast<std::int32_t>(reach_->IndexOf(0, 0));
  frame.stride = static_cast<std::int32_t>(reach_->Stride());
  frame.outside = static_cast<std::int32_t>(reach_->EmptyIndex());
  return frame;
}

std::size_t PoseSieve::SiftBatch(std::size_t batch, const SieveFrame& frame) {
  std::uint8_t* possible = possible_.data() + batch * kSieveBatch;
  num_looks_ += kSieveBatch;
  return kernels_.sift_batch(batches_[batch], frame, reach_->Sets(), WantedBy(batch).data(),
                             possible);
}

/// Worked out when a pose first comes as far as this batch.
const PoseSieve::WantedSets& PoseSieve::WantedBy(std::size_t batch) {
  for (; num_wanted_ <= batch; ++num_wanted_) {
    const Codes& codes = codes_[num_wanted_];
    WantedSets& wanted = wanted_[num_wanted_];
    for (std::size_t k = 0; k < kSieveBatch; ++k)
      wanted[k] = ExpectedBins(codes[k], turn_);
  }
  return wanted_[batch];
}

}  // namespace orvandel
