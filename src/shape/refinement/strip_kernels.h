#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel::shape {

/// Columns of the least-squares problem, a value a strip pixel each. The first seven are derivatives of
/// the pattern: with its motion (x, y, radius * angle, radius * log scale) and with the variance of blur,
/// round and elongated along x and along the diagonal.
enum Column : int {
  kMoveX,
  kMoveY,
  kTurn,
  kGrow,
  kRoundBlur,
  kAxisBlur,
  kDiagonalBlur,
  kPattern,
  kOne,
  kScene,
  kNumColumns
};

/// Sums of the products of all columns: entry (i, j) with i <= j at i * kNumColumns + j.
inline constexpr int kNumMoments = kNumColumns * kNumColumns;

/// Where a strip lies in an image: position = (x, y) + (cosine x - sine y, sine x + cosine y).
struct ImagePlace {
  double x;
  double y;
  double cosine;  ///< times the scale
  double sine;
};

/// Pixels of a scene in one of three types.
template <typename Pixel>
struct PixelGrid {
  const Pixel* pixels;    ///< of the top row
  std::ptrdiff_t stride;  ///< in bytes
  std::int32_t width;
  std::int32_t height;
};

template <typename Pixel>
using SampleFunction = void (*)(const PixelGrid<Pixel>& grid, const ImagePlace& place,
                                const float* x, const float* y, int count, float offset,
                                float* value, float* inside);

/// A blur level's arrays.
struct LevelArrays {
  const float* value;
  const float* dx;
  const float* dy;
  const float* dxx;
  const float* dxy;
  const float* dyy;
};

/// How sure a pixel is: its residual's variance is base + per_grey * grey + per_slope * |gradient|^2.
/// Residuals weigh nothing from `reach` deviations on, with `mismatch` in place of per_slope there.
struct PixelNoise {
  float base;
  float per_grey;
  float per_slope;
  float mismatch;
  float inverse_reach_square;
  float grey_offset;
};

/// Pose parameters whose covariance is wanted: the columns kMoveX to kGrow.
inline constexpr int kNumPoseColumns = 4;

/// Pixels of a row whose cells are marked together.
inline constexpr int kCellRun = 16;

/// How strongly each pixel of an image moves the pose: kNumPoseColumns numbers a pixel, row by row. Rows
/// are whole runs of kCellRun pixels; a mark a run says that something was added to it.
struct InfluenceCells {
  float* cells;
  std::uint8_t* marks;
  std::int32_t width;  ///< a multiple of kCellRun
  std::int32_t height;
};

/// The loops over a strip's pixels. Counts are multiples of kStripBlock (refinement_model.h). Sums are
/// made in eight partial ones, pixel i into sum i mod 8, whatever the vectors' width; so all levels give
/// the same bits.
struct StripKernels {
  /// Samples pixels with the cubic B-spline as kernel, of one pixel's spacing; less `offset`. `inside` is
  /// 1 where the 4 x 4 pixels that it takes lie in the image, else 0 and the value is of no account.
  SampleFunction<std::uint8_t> sample_8;
  SampleFunction<std::uint16_t> sample_16;
  SampleFunction<float> sample_float;

  /// The same with the kernel twice as wide, over 8 x 8 pixels.
  SampleFunction<std::uint8_t> sample_wide_8;
  SampleFunction<std::uint16_t> sample_wide_16;
  SampleFunction<float> sample_wide_float;

  /// The columns kMoveX to kPattern at a blur between two levels: low + share * (high - low).
  void (*blend)(const LevelArrays& low, const LevelArrays& high, float share, const float* x,
                const float* y, float inverse_radius, int count, float* const* columns);

  /// Weighted products of the columns, over the entries first to first + count: of all of them, of all
  /// but kAxisBlur and kDiagonalBlur, and of kPattern, kOne and kScene. Other moments stay as they are.
  void (*sum_moments)(const float* const* columns, const float* weights, int first, int count,
                      double* moments);
  void (*sum_round_moments)(const float* const* columns, const float* weights, int first, int count,
                            double* moments);
  void (*sum_light_moments)(const float* const* columns, const float* weights, int first, int count,
                            double* moments);

  /// scene less the sum of factor * column over the other columns.
  void (*find_residuals)(const float* const* columns, const float* factors, int first, int count,
                         float* residuals);

  /// Robust weights over variances, times presence and inside.
  void (*find_weights)(const float* const* columns, const float* residuals, const float* presence,
                       const float* inside, const PixelNoise& noise, int count, float* weights);

  /// How a change of a sample's grey moves the pose: influence[k] = weight * sum of factors[k][j] *
  /// column j. `moved` gets the sums of influence times residual. Of all columns, and of all but kAxisBlur
  /// and kDiagonalBlur.
  void (*find_influence)(const float* const* columns, const float (*factors)[kNumColumns],
                         const float* weights, const float* residuals, int first, int count,
                         float* const* influence, double* moved);
  void (*find_round_influence)(const float* const* columns, const float (*factors)[kNumColumns],
                               const float* weights, const float* residuals, int first, int count,
                               float* const* influence, double* moved);

  /// Spreads the samples' influence over the scene's pixels that they were made of. `strength` is a factor
  /// a sample.
  void (*spread_over_scene)(const ImagePlace& place, const float* x, const float* y, int count,
                            const float* const* influence, const float* strength,
                            const InfluenceCells& cells);
  void (*spread_over_scene_wide)(const ImagePlace& place, const float* x, const float* y, int count,
                                 const float* const* influence, const float* strength,
                                 const InfluenceCells& cells);
  /// Sum of the products of the marked cells' numbers, 4 x 4; leaves cells and marks 0.
  void (*sum_cells)(const InfluenceCells& cells, double* products);

  /// Adds the sums of the products of the samples' own influence, times strength^2 and `factor`.
  void (*sum_influence)(int count, const float* const* influence, const float* strength,
                        double factor, double* products);

  /// Adds the sum of the products of the numbers of the pattern image's pixels, where sample i is made of the 3 x 3 pixels in the cells
  /// places[9 i] to places[9 i + 8], with the weights (1 4 1)/6 each way. `cells` are kNumPoseColumns numbers
  /// each.
  void (*sum_over_pattern)(const std::int32_t* places, int count, const float* const* influence,
                           const float* strength, float* cells, int num_cells, double* products);
};

ORVANDEL_DECLARE_KERNELS(StripKernels)

}  // namespace orvandel::shape
