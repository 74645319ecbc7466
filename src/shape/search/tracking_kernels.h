#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel::shape {

/// Points that the kernels work on at once. Sums run in as many lanes at every level, so that they round
/// alike.
inline constexpr std::size_t kLanes = 16;

/// Where a pattern's points lie in a level of the scene: level pixels = (x, y) + [cosine -sine; sine cosine] p.
struct LevelFrame {
  float x;
  float y;
  float cosine;  ///< times pixels of the level per pattern pixel
  float sine;
  float turn_cosine;  ///< of the rotation alone
  float turn_sine;
};

/// Model points, as many as `padded` entries each, a multiple of kLanes.
struct PointArrays {
  const float* x;
  const float* y;
  const float* normal_x;
  const float* normal_y;
  std::size_t padded;
  std::size_t size;
};

/// How edges are looked for along the normals of a level's gradients.
struct EdgeSampling {
  const std::int32_t* packed;  ///< gradients, rows without gaps
  std::int32_t width;          ///< at least 4
  std::int32_t height;         ///< at least 4
  float least_slope;           ///< along the normal, gradient units
  float least_cosine_square;   ///< between gradient and normal
  float sign;                  ///< 1 or -1; 0 where either will do
  std::int32_t range;          ///< pixels to either side, 1 .. kMaxRange
};
inline constexpr std::int32_t kMaxRange = 3;

/// What was met along each normal; arrays of `padded` entries.
struct MeasuredArrays {
  float* offset;    ///< of the edge from the point, level pixels along the normal
  float* slope;     ///< there; below 0 where the sign is reversed
  float* found;     ///< 1 or 0
  float* visible;   ///< 1 or 0; found only where visible
  float* normal_x;  ///< as rotated: what the offset gains per pixel of shift ...
  float* normal_y;
  float* turn;  ///< ... per radian ...
  float* grow;  ///< ... and per unit of the scale's logarithm
};

/// Sums over points: weight w, J = (normal_x, normal_y, turn, grow), offset t.
enum FitSum : std::size_t {
  kSumXX,
  kSumXY,
  kSumXT,
  kSumXG,
  kSumYY,
  kSumYT,
  kSumYG,
  kSumTT,
  kSumTG,
  kSumGG,  // w J J'
  kSumX,
  kSumY,
  kSumT,
  kSumG,  // w J t
  kSumWeight,
  kSumSquare,  // w and w t t
  kNumFitSums
};

/// Sums over points after a step of the pose.
enum CreditSum : std::size_t {
  kSumCredit,   ///< 1 for an edge that fits, falling to 0 at kCreditReach
  kSumVisible,  ///< visible points
  kSumFound,    ///< points whose edge lies within the reach
  kSumFoundSquare,
  kSumSlope,  ///< sizes of the slopes of those points
  kNumCreditSums
};

/// An edge that is farther off fits no more, level pixels.
inline constexpr float kCreditReach = 1.5F;

struct TrackingKernels {
  /// Nearest pixels: for first looks.
  void (*measure_nearest)(const PointArrays& points, const LevelFrame& frame,
                          const EdgeSampling& sampling, const MeasuredArrays& measured);
  /// Bilinear.
  void (*measure_between)(const PointArrays& points, const LevelFrame& frame,
                          const EdgeSampling& sampling, const MeasuredArrays& measured);
  /// Sums with Tukey's weights, 0 from `reach` on. `sums` has kNumFitSums entries.
  void (*sum_fit)(const MeasuredArrays& measured, std::size_t size, std::size_t padded, float reach,
                  double* sums);
  /// `step`: the change of (x, y, angle, log scale) in level pixels and radians. `sums` has kNumCreditSums entries.
  void (*sum_credit)(const MeasuredArrays& measured, std::size_t size, std::size_t padded,
                     const float* step, double* sums);
};

ORVANDEL_DECLARE_KERNELS(TrackingKernels)

}  // namespace orvandel::shape
