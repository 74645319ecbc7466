#include "verify/rejection_test.h"

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

RejectionTest::RejectionTest(const VerificationPointsView& points, Point reference,
                             const CEdgeImgComplement* edges, const MatchOptions& options)
    : num_points_(points.size()),
      options_(options),
      edges_(edges),
      kernels_(RejectionKernelsOf(ActiveSimdLevel())),
      order_(SpreadOrder(num_points_)),
      num_possible_(num_points_) {
  MakeMap();
  FillBatches(points, reference);
  wanted_.resize(batches_.size());
  possible_.assign(batches_.size() * kPointsPerBatch, 1);
}

/// Without memory for it all goes on without a map, only slower.
void RejectionTest::MakeMap() {
  if (edges_ == nullptr || edges_->valid == nullptr) return;
  try {
    map_.emplace(edges_->width, edges_->height, options_);
  } catch (const std::bad_alloc&) {
    map_.reset();
  }
}

void RejectionTest::FillBatches(const VerificationPointsView& points, Point reference) {
  PointBatch empty;
  std::fill(std::begin(empty.dx), std::end(empty.dx), kNoNumber);
  std::fill(std::begin(empty.dy), std::end(empty.dy), kNoNumber);
  const std::size_t num_batches = (num_points_ + kPointsPerBatch - 1) / kPointsPerBatch;
  batches_.assign(num_batches, empty);
  directions_.assign(num_batches, Angles{});

  for (std::size_t place = 0; place < num_points_; ++place) {
    const std::uint32_t point = order_[place];
    PointBatch& batch = batches_[place / kPointsPerBatch];
    batch.dx[place % kPointsPerBatch] = points.x[point] - reference.x;
    batch.dy[place % kPointsPerBatch] = points.y[point] - reference.y;
    const double direction = points.direction[point];
    all_directions_quantised_ = all_directions_quantised_ && CanBeQuantised(direction);
    if (!all_directions_quantised_) continue;
    directions_[place / kPointsPerBatch][place % kPointsPerBatch] = Quantised(direction);
  }
}

void RejectionTest::SetRotation(double angle) {
  is_rotation_quantised_ = CanBeQuantised(angle);
  rotation_ = is_rotation_quantised_ ? Quantised(angle) : QuantisedAngle{0};
  num_wanted_ = 0;
}

bool RejectionTest::Passes(const PointMapper& mapper, std::int64_t max_impossible) {
  if (!all_directions_quantised_ || !is_rotation_quantised_ || !IsMapReady()) {
    std::fill(possible_.begin(), possible_.end(), std::uint8_t{1});
    num_possible_ = num_points_;
    return true;
  }
  // The places without a point cannot have credit either.
  const std::size_t num_empty = batches_.size() * kPointsPerBatch - num_points_;
  const std::int64_t most = max_impossible + static_cast<std::int64_t>(num_empty);
  const MapFrame frame = FrameOf(mapper);
  num_possible_ = 0;
  for (std::size_t b = 0; b < batches_.size(); ++b) {
    num_possible_ += TestBatch(b, frame);
    const std::size_t num_tested = (b + 1) * kPointsPerBatch;
    if (static_cast<std::int64_t>(num_tested - num_possible_) > most) return false;
  }
  return true;
}

/// The map is filled when the first pose comes: many scenes propose none.
bool RejectionTest::IsMapReady() {
  if (!map_) return false;
  if (!is_map_filled_) map_->Fill(*edges_);
  is_map_filled_ = true;
  return true;
}

MapFrame RejectionTest::FrameOf(const PointMapper& mapper) const {
  const int radius = options_.radius;
  MapFrame frame;
  frame.tx = mapper.tx();
  frame.ty = mapper.ty();
  frame.cosine = mapper.cosine();
  frame.sine = mapper.sine();
  frame.first_column = frame.first_row = radius + 1;
  frame.end_column = edges_->width - radius - 1;
  frame.end_row = edges_->height - radius - 1;
  frame.first_square = static_cast<std::int32_t>(map_->IndexOf(0, 0));
  frame.stride = static_cast<std::int32_t>(map_->Stride());
  frame.outside = static_cast<std::int32_t>(map_->EmptyIndex());
  return frame;
}

std::size_t RejectionTest::TestBatch(std::size_t batch, const MapFrame& frame) {
  std::uint8_t* possible = possible_.data() + batch * kPointsPerBatch;
  num_looks_ += kPointsPerBatch;
  return kernels_.test_batch(batches_[batch], frame, map_->Masks(), WantedBy(batch).data(),
                             possible);
}

/// Worked out when a pose first comes as far as this batch.
const RejectionTest::WantedMasks& RejectionTest::WantedBy(std::size_t batch) {
  for (; num_wanted_ <= batch; ++num_wanted_) {
    const Angles& directions = directions_[num_wanted_];
    WantedMasks& wanted = wanted_[num_wanted_];
    for (std::size_t k = 0; k < kPointsPerBatch; ++k)
      wanted[k] = ExpectedBins(directions[k], rotation_);
  }
  return wanted_[batch];
}

}  // namespace orvandel
