#include "shape/edges/edge_detection.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>

#include "shape/edges/edge_row_kernels.h"

namespace orvandel::shape::edges {
namespace {

constexpr std::size_t kCacheLine = 64;

/// Rows and columns along the border that hold no points.
constexpr std::int32_t kBorder = kEdgeBorder;
constexpr std::int32_t kSmallestSide = 2 * kBorder + 1;

/// Strength of a gradient as the kernels compute it from the square of its scaled length.
float StrengthOf(float square) {
  return std::sqrt(square) * (1.0F / kGradientScale);
}

/// The smallest square whose strength reaches `least_strength`, so that a threshold means exactly
/// the numbers reported. The estimate is off by a few units in the last place at most.
float LeastSquare(float least_strength) {
  const float scaled = least_strength * kGradientScale;
  float square = scaled * scaled;
  if (!(square < std::numeric_limits<float>::max())) return std::numeric_limits<float>::max();
  while (square > 0 && StrengthOf(std::nextafter(square, 0.0F)) >= least_strength)
    square = std::nextafter(square, 0.0F);
  while (StrengthOf(square) < least_strength)
    square = std::nextafter(square, std::numeric_limits<float>::max());
  return square;
}

/// The smallest whole number that is not below `square` once it is a float.
void SetLeastSquare(float square, std::int32_t& least) {
  constexpr float kLargest = 2147483520.0F;  // the largest float that is a 32-bit integer
  least = static_cast<std::int32_t>(std::ceil(std::min(square, kLargest)));
  while (least > 0 && static_cast<float>(least - 1) >= square)
    --least;
}
void SetLeastSquare(float square, float& least) {
  least = square;
}

/// Candidates are located together once there are so many: single ones would leave vectors nearly
/// empty.
constexpr std::size_t kBatch = 512;

/// The working storage of a sweep, laid out in a workspace.
template <typename Pixel, typename Value>
class WorkingRows {
 public:
  WorkingRows(std::int32_t width, EdgeWorkspace& workspace)
      : num_columns_((static_cast<std::size_t>(width) + kEdgeBlock - 1) / kEdgeBlock * kEdgeBlock +
                     2 * kEdgeBlock),
        value_pitch_(OddLines(num_columns_ * sizeof(Value))),
        pixel_bytes_(WholeLines(num_columns_ * sizeof(Pixel))),
        candidate_values_pitch_(OddLines((kBatch + num_columns_) * sizeof(Value))),
        indices_pitch_(OddLines((kBatch + num_columns_) * sizeof(std::int32_t))),
        pixels_(kNumRows * value_pitch_),
        candidates_(pixels_ + pixel_bytes_),
        indices_(candidates_ + kNumCandidateArrays * candidate_values_pitch_),
        start_(workspace.Reserve(indices_ + kNumIndexArrays * indices_pitch_)) {
    std::memset(start_, 0, candidates_);
  }

  Pixel* Pixels() const { return At<Pixel>(pixels_) + kEdgeBlock; }
  /// Rows 0 to 7 are for sums and smoothed values.
  Value* Row(std::size_t index) const { return At<Value>(index * value_pitch_) + kEdgeBlock; }
  EdgeCandidatesOf<Value> Scratch() const { return {Indices(0), Row(8), Row(9), Row(10), Row(11)}; }
  EdgeCandidatesOf<Value> Candidates() const {
    return {Indices(1), CandidateValues(0), CandidateValues(1), CandidateValues(2),
            CandidateValues(3)};
  }
  std::int32_t* CandidateRows() const { return Indices(2); }
  std::int32_t* Blocks() const { return Indices(3); }

 private:
  static constexpr std::size_t kNumRows = 12;
  static constexpr std::size_t kNumCandidateArrays = 4;
  static constexpr std::size_t kNumIndexArrays = 4;

  static std::size_t WholeLines(std::size_t num_bytes) {
    return (num_bytes + kCacheLine - 1) / kCacheLine * kCacheLine;
  }
  /// Rows an odd number of cache lines apart do not meet in the same few sets of the first cache,
  /// which at some widths doubles the time.
  static std::size_t OddLines(std::size_t num_bytes) { return WholeLines(num_bytes) | kCacheLine; }

  template <typename T>
  T* At(std::size_t offset) const {
    return reinterpret_cast<T*>(start_ + offset);
  }
  Value* CandidateValues(std::size_t array) const {
    return At<Value>(candidates_ + array * candidate_values_pitch_);
  }
  std::int32_t* Indices(std::size_t array) const {
    return At<std::int32_t>(indices_ + array * indices_pitch_);
  }

  std::size_t num_columns_;
  std::size_t value_pitch_;
  std::size_t pixel_bytes_;
  std::size_t candidate_values_pitch_;
  std::size_t indices_pitch_;
  std::size_t pixels_;  // offsets from the start
  std::size_t candidates_;
  std::size_t indices_;
  std::byte* start_;
};

template <typename Value>
EdgeCandidatesOf<Value> From(const EdgeCandidatesOf<Value>& candidates, std::size_t first) {
  return {candidates.column + first, candidates.gradient_x + first, candidates.gradient_y + first,
          candidates.before + first, candidates.after + first};
}

template <typename Value, std::size_t n>
void MakeOldestNewest(Value* (&rows)[n]) {
  Value* const oldest = rows[n - 1];
  for (std::size_t i = n - 1; i > 0; --i)
    rows[i] = rows[i - 1];
  rows[0] = oldest;
}

template <typename Pixel, typename Value, typename Square>
void Sweep(const ImageViewOf<Pixel>& image, float least_strength,
           const EdgeLoopsOf<Pixel, Value, Square>& loops, EdgeWorkspace& workspace,
           EdgePoints& points) {
  const auto width = static_cast<std::size_t>(image.width);
  const WorkingRows<Pixel, Value> rows(image.width, workspace);
  const EdgeCandidatesOf<Value> candidates = rows.Candidates();
  EdgeRowOf<Pixel, Value, Square> row = {};
  row.pixels = rows.Pixels();
  row.width = width;
  for (std::size_t i = 0; i < std::size(row.sums); ++i)
    row.sums[i] = rows.Row(i);
  for (std::size_t i = 0; i < std::size(row.smooth); ++i)
    row.smooth[i] = rows.Row(std::size(row.sums) + i);
  row.scratch = rows.Scratch();
  row.blocks = rows.Blocks();
  SetLeastSquare(LeastSquare(least_strength), row.least_square);

  std::size_t num_waiting = 0;
  const auto locate_waiting = [&] {
    loops.locate(candidates, rows.CandidateRows(), num_waiting, points.Append(num_waiting));
    num_waiting = 0;
  };
  // Row y completes smoothed row y - 1, and thereby all that row y - 3 wants.
  for (std::int32_t y = 0; y < image.height; ++y) {
    // A copy, so that kernels may read whole blocks and no byte beyond the host's rows.
    std::memcpy(rows.Pixels(), image.Row(y), width * sizeof(Pixel));
    MakeOldestNewest(row.sums);
    MakeOldestNewest(row.smooth);
    row.found = From(candidates, num_waiting);
    const std::size_t num_found = loops.collect(row);
    if (y < 2 * kBorder) continue;  // the rows are not filled yet

    std::fill_n(rows.CandidateRows() + num_waiting, num_found, y - kBorder);
    num_waiting += num_found;
    points.AnnounceRow(num_found);
    if (num_waiting >= kBatch) locate_waiting();
  }
  locate_waiting();
}

template <typename Pixel, typename Loops>
void Detect(const ImageViewOf<Pixel>& image, float least_strength, const Loops& loops,
            EdgeWorkspace& workspace, EdgePoints& points) {
  points.Clear();
  const auto add_empty_rows = [&](std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i)
      points.AnnounceRow(0);
  };
  if (image.IsEmpty() || std::min(image.width, image.height) < kSmallestSide) {
    add_empty_rows(image.height);
    return;
  }
  add_empty_rows(kBorder);
  Sweep(image, least_strength, loops, workspace, points);
  add_empty_rows(kBorder);
}

}  // namespace

void DetectEdgePoints(const ImageView8& image, float least_strength, EdgeWorkspace& workspace,
                      EdgePoints& points) {
  Detect(image, least_strength, EdgeRowKernelsOf(ActiveSimdLevel()).of_8_bits, workspace, points);
}

void DetectEdgePoints(const ImageView16& image, float least_strength, EdgeWorkspace& workspace,
                      EdgePoints& points) {
  Detect(image, least_strength, EdgeRowKernelsOf(ActiveSimdLevel()).of_16_bits, workspace, points);
}

}  // namespace orvandel::shape::edges
