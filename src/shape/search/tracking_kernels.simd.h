// Kernels of the tracking, as loops over 16 lanes that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h). No inline function of another header is called here.

#include "shape/search/tracking_kernels.h"

namespace orvandel::shape {
namespace {

constexpr std::int32_t kMaxSamples = 2 * kMaxRange + 3;

/// Points of a block in the level's pixels.
struct Block {
  float x[kLanes];
  float y[kLanes];
  float normal_x[kLanes];
  float normal_y[kLanes];
};

/// Slopes along the normals of a block, one row a sample.
struct Slopes {
  float signed_slope[kMaxSamples][kLanes];
  float slope[kMaxSamples][kLanes];    ///< as it counts
  float aligned[kMaxSamples][kLanes];  ///< 1 where the gradient points along the normal, else 0
};

inline float Smaller(float a, float b) {
  return a < b ? a : b;
}
inline float Larger(float a, float b) {
  return a > b ? a : b;
}

inline float UnpackX(std::int32_t packed) {
  return static_cast<float>(static_cast<std::int32_t>(static_cast<std::uint32_t>(packed) << 16) >>
                            16);
}
inline float UnpackY(std::int32_t packed) {
  return static_cast<float>(packed >> 16);
}

inline void CopyLanes(const float* from, float* to) {
  for (std::size_t i = 0; i < kLanes; ++i)
    to[i] = from[i];
}

inline void PlaceBlock(const PointArrays& points, std::size_t first, const LevelFrame& frame,
                       const EdgeSampling& sampling, const MeasuredArrays& measured, Block& block) {
  const float* const px = points.x + first;
  const float* const py = points.y + first;
  const float* const nx = points.normal_x + first;
  const float* const ny = points.normal_y + first;
  const auto last_x = static_cast<float>(sampling.width - 2);
  const auto last_y = static_cast<float>(sampling.height - 2);
  // Local arrays overlap no others; with five of the caller's, clang would not make vector code.
  float turn[kLanes];
  float grow[kLanes];
  float visible[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) {
    const float arm_x = frame.cosine * px[i] - frame.sine * py[i];
    const float arm_y = frame.sine * px[i] + frame.cosine * py[i];
    const float normal_x = frame.turn_cosine * nx[i] - frame.turn_sine * ny[i];
    const float normal_y = frame.turn_sine * nx[i] + frame.turn_cosine * ny[i];
    const float x = frame.x + arm_x;
    const float y = frame.y + arm_y;
    block.x[i] = x;
    block.y[i] = y;
    block.normal_x[i] = normal_x;
    block.normal_y[i] = normal_y;
    turn[i] = normal_y * arm_x - normal_x * arm_y;
    grow[i] = normal_x * arm_x + normal_y * arm_y;
    const bool inside = (x >= 1.0F) & (y >= 1.0F) & (x <= last_x) & (y <= last_y);
    visible[i] = inside ? 1.0F : 0.0F;
  }
  CopyLanes(block.normal_x, measured.normal_x + first);
  CopyLanes(block.normal_y, measured.normal_y + first);
  CopyLanes(turn, measured.turn + first);
  CopyLanes(grow, measured.grow + first);
  CopyLanes(visible, measured.visible + first);
}

inline void KeepSlope(const EdgeSampling& sampling, const float* gx, const float* gy,
                      const Block& block, std::int32_t k, Slopes& slopes) {
  for (std::size_t i = 0; i < kLanes; ++i) {
    const float slope = block.normal_x[i] * gx[i] + block.normal_y[i] * gy[i];
    const float square = gx[i] * gx[i] + gy[i] * gy[i];
    const float size = slope < 0.0F ? -slope : slope;
    slopes.signed_slope[k][i] = slope;
    slopes.slope[k][i] = sampling.sign == 0.0F ? size : sampling.sign * slope;
    slopes.aligned[k][i] = slope * slope >= sampling.least_cosine_square * square ? 1.0F : 0.0F;
  }
}

inline void SampleNearest(const EdgeSampling& sampling, const Block& block, float t, std::int32_t k,
                          Slopes& slopes) {
  const auto last_x = static_cast<float>(sampling.width - 1);
  const auto last_y = static_cast<float>(sampling.height - 1);
  std::int32_t index[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) {
    const float x = Smaller(Larger(block.x[i] + t * block.normal_x[i], 0.0F), last_x);
    const float y = Smaller(Larger(block.y[i] + t * block.normal_y[i], 0.0F), last_y);
    index[i] =
        static_cast<std::int32_t>(y + 0.5F) * sampling.width + static_cast<std::int32_t>(x + 0.5F);
  }
  std::int32_t packed[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i)
    packed[i] = sampling.packed[index[i]];
  float gx[kLanes];
  float gy[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) {
    gx[i] = UnpackX(packed[i]);
    gy[i] = UnpackY(packed[i]);
  }
  KeepSlope(sampling, gx, gy, block, k, slopes);
}

inline void SampleBetween(const EdgeSampling& sampling, const Block& block, float t, std::int32_t k,
                          Slopes& slopes) {
  const auto last_x = static_cast<float>(sampling.width - 1);
  const auto last_y = static_cast<float>(sampling.height - 1);
  const std::int32_t end_x = sampling.width - 2;
  const std::int32_t end_y = sampling.height - 2;
  std::int32_t index[kLanes];
  float right[kLanes];
  float lower[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) {
    const float x = Smaller(Larger(block.x[i] + t * block.normal_x[i], 0.0F), last_x);
    const float y = Smaller(Larger(block.y[i] + t * block.normal_y[i], 0.0F), last_y);
    const auto floor_x = static_cast<std::int32_t>(x);
    const auto floor_y = static_cast<std::int32_t>(y);
    const std::int32_t column = floor_x < end_x ? floor_x : end_x;
    const std::int32_t row = floor_y < end_y ? floor_y : end_y;
    right[i] = x - static_cast<float>(column);
    lower[i] = y - static_cast<float>(row);
    index[i] = row * sampling.width + column;
  }
  // All corners before any sum: clang makes mostly scalar code of a loop over corners with both.
  std::int32_t packed[4][kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) {
    const std::int32_t* const corner = sampling.packed + index[i];
    packed[0][i] = corner[0];
    packed[1][i] = corner[1];
    packed[2][i] = corner[sampling.width];
    packed[3][i] = corner[sampling.width + 1];
  }
  float gx[kLanes];
  float gy[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i) {
    const float left = 1.0F - right[i];
    const float upper = 1.0F - lower[i];
    const float shares[4] = {left * upper, right[i] * upper, left * lower[i], right[i] * lower[i]};
    float x = 0.0F;
    float y = 0.0F;
    for (std::size_t corner = 0; corner < 4; ++corner) {
      x += shares[corner] * UnpackX(packed[corner][i]);
      y += shares[corner] * UnpackY(packed[corner][i]);
    }
    gx[i] = x;
    gy[i] = y;
  }
  KeepSlope(sampling, gx, gy, block, k, slopes);
}

/// The best peak along each normal: large slopes count more, and near ones.
inline void PickPeaks(const EdgeSampling& sampling, const Slopes& slopes, std::size_t first,
                      const MeasuredArrays& measured) {
  constexpr float kFarCost = 1.0F / 16.0F;
  float best[kLanes];
  float offset[kLanes];
  float slope[kLanes];
  for (std::size_t i = 0; i < kLanes; ++i)
    best[i] = offset[i] = slope[i] = 0.0F;
  for (std::int32_t k = 1; k <= 2 * sampling.range + 1; ++k) {
    const auto t = static_cast<float>(k - 1 - sampling.range);
    const float near = 1.0F - kFarCost * t * t;
    const float* const before = slopes.slope[k - 1];
    const float* const here = slopes.slope[k];
    const float* const after = slopes.slope[k + 1];
    for (std::size_t i = 0; i < kLanes; ++i) {
      // Loaded in any case: clang makes no vector code of a load that only some lanes need.
      const float signed_slope = slopes.signed_slope[k][i];
      const float rank = here[i] * near;
      const bool is_peak = (here[i] > before[i]) & (here[i] >= after[i]) &
                           (here[i] >= sampling.least_slope) & (slopes.aligned[k][i] > 0.0F) &
                           (rank > best[i]);
      const float curvature = 2.0F * here[i] - before[i] - after[i];
      const float vertex = t + 0.5F * (after[i] - before[i]) / (is_peak ? curvature : 1.0F);
      best[i] = is_peak ? rank : best[i];
      offset[i] = is_peak ? vertex : offset[i];
      slope[i] = is_peak ? signed_slope : slope[i];
    }
  }
  for (std::size_t i = 0; i < kLanes; ++i) {
    const bool is_found = (best[i] > 0.0F) & (measured.visible[first + i] > 0.0F);
    measured.offset[first + i] = offset[i];
    measured.slope[first + i] = slope[i];
    measured.found[first + i] = is_found ? 1.0F : 0.0F;
  }
}

void MeasureNearest(const PointArrays& points, const LevelFrame& frame,
                    const EdgeSampling& sampling, const MeasuredArrays& measured) {
  for (std::size_t first = 0; first < points.padded; first += kLanes) {
    Block block;
    PlaceBlock(points, first, frame, sampling, measured, block);
    Slopes slopes;
    for (std::int32_t k = 0; k < 2 * sampling.range + 3; ++k)
      SampleNearest(sampling, block, static_cast<float>(k - 1 - sampling.range), k, slopes);
    PickPeaks(sampling, slopes, first, measured);
  }
}

void MeasureBetween(const PointArrays& points, const LevelFrame& frame,
                    const EdgeSampling& sampling, const MeasuredArrays& measured) {
  for (std::size_t first = 0; first < points.padded; first += kLanes) {
    Block block;
    PlaceBlock(points, first, frame, sampling, measured, block);
    Slopes slopes;
    for (std::int32_t k = 0; k < 2 * sampling.range + 3; ++k)
      SampleBetween(sampling, block, static_cast<float>(k - 1 - sampling.range), k, slopes);
    PickPeaks(sampling, slopes, first, measured);
  }
}

/// Lanes first to last, so that the rounding is the same everywhere.
template <std::size_t kCount>
inline void SumLanes(const float (&lanes)[kCount][kLanes], double* sums) {
  for (std::size_t s = 0; s < kCount; ++s) {
    double sum = 0.0;
    for (std::size_t i = 0; i < kLanes; ++i)
      sum += static_cast<double>(lanes[s][i]);
    sums[s] = sum;
  }
}

void SumFit(const MeasuredArrays& measured, std::size_t size, std::size_t padded, float reach,
            double* sums) {
  float lanes[kNumFitSums][kLanes] = {};
  const float inverse_reach = 1.0F / reach;
  for (std::size_t first = 0; first < padded; first += kLanes) {
    float w[kLanes];
    for (std::size_t i = 0; i < kLanes; ++i) {
      const float u = measured.offset[first + i] * inverse_reach;
      const float rest = Larger(1.0F - u * u, 0.0F);
      const float counts = static_cast<std::int32_t>(first + i) < static_cast<std::int32_t>(size)
                               ? measured.found[first + i]
                               : 0.0F;
      w[i] = counts * rest * rest;
    }
    const float* const x = measured.normal_x + first;
    const float* const y = measured.normal_y + first;
    const float* const turn = measured.turn + first;
    const float* const grow = measured.grow + first;
    const float* const t = measured.offset + first;
    for (std::size_t i = 0; i < kLanes; ++i) {
      const float wx = w[i] * x[i];
      const float wy = w[i] * y[i];
      const float wt = w[i] * turn[i];
      const float wg = w[i] * grow[i];
      lanes[kSumXX][i] += wx * x[i];
      lanes[kSumXY][i] += wx * y[i];
      lanes[kSumXT][i] += wx * turn[i];
      lanes[kSumXG][i] += wx * grow[i];
      lanes[kSumYY][i] += wy * y[i];
      lanes[kSumYT][i] += wy * turn[i];
      lanes[kSumYG][i] += wy * grow[i];
      lanes[kSumTT][i] += wt * turn[i];
      lanes[kSumTG][i] += wt * grow[i];
      lanes[kSumGG][i] += wg * grow[i];
      lanes[kSumX][i] += wx * t[i];
      lanes[kSumY][i] += wy * t[i];
      lanes[kSumT][i] += wt * t[i];
      lanes[kSumG][i] += wg * t[i];
      lanes[kSumWeight][i] += w[i];
      lanes[kSumSquare][i] += w[i] * t[i] * t[i];
    }
  }
  SumLanes(lanes, sums);
}

void SumCredit(const MeasuredArrays& measured, std::size_t size, std::size_t padded,
               const float* step, double* sums) {
  float lanes[kNumCreditSums][kLanes] = {};
  for (std::size_t first = 0; first < padded; first += kLanes) {
    for (std::size_t i = 0; i < kLanes; ++i) {
      const std::size_t p = first + i;
      const float counts =
          static_cast<std::int32_t>(p) < static_cast<std::int32_t>(size) ? 1.0F : 0.0F;
      const float rest =
          measured.offset[p] - (measured.normal_x[p] * step[0] + measured.normal_y[p] * step[1] +
                                measured.turn[p] * step[2] + measured.grow[p] * step[3]);
      const float u = rest * (1.0F / kCreditReach);
      const float credit = Larger(1.0F - u * u, 0.0F) * measured.found[p] * counts;
      const float fits = credit > 0.0F ? 1.0F : 0.0F;
      const float slope = measured.slope[p];
      lanes[kSumCredit][i] += credit;
      lanes[kSumVisible][i] += measured.visible[p] * counts;
      lanes[kSumFound][i] += fits;
      lanes[kSumFoundSquare][i] += fits * rest * rest;
      lanes[kSumSlope][i] += fits * (slope < 0.0F ? -slope : slope);
    }
  }
  SumLanes(lanes, sums);
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const TrackingKernels kTrackingKernels = {MeasureNearest, MeasureBetween, SumFit, SumCredit};
}

}  // namespace orvandel::shape
