// The loops over a strip's pixels, written so that compilers turn them into vector code; compiled once a level
// (platform/simd_dispatch.h).

#include "shape/refinement/strip_kernels.h"

namespace orvandel::shape {
namespace {

constexpr int kBlock = 8;
constexpr int kBatch = 64;  ///< pixels whose positions are worked out before they are sampled

/// First pixel taken and the kernel's weights, of one batch.
template <int kTaps>
struct Taps {
  std::int32_t column[kBatch];
  std::int32_t row[kBatch];
  float across[kBatch][kTaps];
  float down[kBatch][kTaps];
};

/// Weights of the cubic B-spline at the four pixels around, `t` beyond the second.
inline void SplineWeights(float t, float* weights) {
  const float s = 1.0F - t;
  const float t2 = t * t;
  const float s2 = s * s;
  weights[0] = s2 * s * (1.0F / 6.0F);
  weights[1] = (2.0F / 3.0F) - t2 * (1.0F - 0.5F * t);
  weights[2] = (2.0F / 3.0F) - s2 * (1.0F - 0.5F * s);
  weights[3] = t2 * t * (1.0F / 6.0F);
}

/// Weights of half the B-spline of doubled width at eight pixels, `t` beyond the fourth: those at every
/// other pixel are weights of the plain one at half the distances.
inline void WideSplineWeights(float t, float* weights) {
  float even[4];
  float odd[4];
  SplineWeights(0.5F + 0.5F * t, even);  // pixels t + 3, t + 1, t - 1, t - 3 away
  SplineWeights(0.5F * t, odd);          // t + 2, t, t - 2, t - 4
  for (int k = 0; k < 4; ++k) {
    weights[2 * k] = 0.5F * even[k];
    weights[2 * k + 1] = 0.5F * odd[k];
  }
}

template <int kTaps>
inline void FillWeights(float t, float* weights) {
  if constexpr (kTaps == 4) {
    SplineWeights(t, weights);
  } else {
    WideSplineWeights(t, weights);
  }
}

template <int kTaps>
void PlaceTaps(std::int32_t width, std::int32_t height, const ImagePlace& place, const float* x,
               const float* y, int count, Taps<kTaps>& taps, float* inside) {
  constexpr int kBefore = kTaps / 2 - 1;  // pixels left of the one at or before the position
  constexpr double kBelowOne = 1.0 - 1e-9;
  double columns[kBatch];
  double rows[kBatch];
  const double right = width - kTaps + kBelowOne;
  const double bottom = height - kTaps + kBelowOne;
  for (int i = 0; i < count; ++i) {
    const double px = static_cast<double>(x[i]);
    const double py = static_cast<double>(y[i]);
    // Counted from the first place that has all taps in the image, so that cutting off rounds down.
    const double u = place.x + (place.cosine * px - place.sine * py) - kBefore;
    const double v = place.y + (place.sine * px + place.cosine * py) - kBefore;
    const double above_u = u > 0.0 ? u : 0.0;
    const double above_v = v > 0.0 ? v : 0.0;
    columns[i] = above_u < right ? above_u : right;
    rows[i] = above_v < bottom ? above_v : bottom;
    const double is_inside = (columns[i] == u ? 1.0 : 0.0) * (rows[i] == v ? 1.0 : 0.0);
    inside[i] = static_cast<float>(is_inside);
  }
  float along[kBatch];
  float below[kBatch];
  for (int i = 0; i < count; ++i) {
    taps.column[i] = static_cast<std::int32_t>(columns[i]);
    along[i] = static_cast<float>(columns[i] - taps.column[i]);
    taps.row[i] = static_cast<std::int32_t>(rows[i]);
    below[i] = static_cast<float>(rows[i] - taps.row[i]);
  }
  for (int i = 0; i < count; ++i) {
    FillWeights<kTaps>(along[i], taps.across[i]);
    FillWeights<kTaps>(below[i], taps.down[i]);
  }
}

/// Sums down first, then across, in pairs.
template <int kTaps, typename Pixel>
inline float SumTaps(const Pixel* first, std::ptrdiff_t stride, const float* across,
                     const float* down) {
  float sums[kTaps] = {};
  for (int j = 0; j < kTaps; ++j) {
    const auto* const row =
        reinterpret_cast<const Pixel*>(reinterpret_cast<const unsigned char*>(first) + j * stride);
    for (int k = 0; k < kTaps; ++k)
      sums[k] += down[j] * static_cast<float>(row[k]);
  }
  for (int k = 0; k < kTaps; ++k)
    sums[k] *= across[k];
  for (int half = kTaps / 2; half > 0; half /= 2) {
    for (int k = 0; k < half; ++k)
      sums[k] += sums[k + half];
  }
  return sums[0];
}

template <int kTaps, typename Pixel>
void Sample(const PixelGrid<Pixel>& grid, const ImagePlace& place, const float* x, const float* y,
            int count, float offset, float* value, float* inside) {
  Taps<kTaps> taps;
  for (int begin = 0; begin < count; begin += kBatch) {
    const int size = count - begin < kBatch ? count - begin : kBatch;
    PlaceTaps<kTaps>(grid.width, grid.height, place, x + begin, y + begin, size, taps,
                     inside + begin);
    for (int i = 0; i < size; ++i) {
      const auto* const row = reinterpret_cast<const Pixel*>(
          reinterpret_cast<const unsigned char*>(grid.pixels) + taps.row[i] * grid.stride);
      value[begin + i] =
          SumTaps<kTaps>(row + taps.column[i], grid.stride, taps.across[i], taps.down[i]) - offset;
    }
  }
}

void Blend(const LevelArrays& low, const LevelArrays& high, float share, const float* x,
           const float* y, float inverse_radius, int count, float* const* columns) {
  float* const move_x = columns[kMoveX];
  float* const move_y = columns[kMoveY];
  float* const turn = columns[kTurn];
  float* const grow = columns[kGrow];
  float* const round_blur = columns[kRoundBlur];
  float* const axis_blur = columns[kAxisBlur];
  float* const diagonal_blur = columns[kDiagonalBlur];
  float* const pattern = columns[kPattern];
  for (int i = 0; i < count; ++i) {
    const float gx = low.dx[i] + share * (high.dx[i] - low.dx[i]);
    const float gy = low.dy[i] + share * (high.dy[i] - low.dy[i]);
    move_x[i] = gx;
    move_y[i] = gy;
    turn[i] = (gy * x[i] - gx * y[i]) * inverse_radius;
    grow[i] = (gx * x[i] + gy * y[i]) * inverse_radius;
  }
  for (int i = 0; i < count; ++i) {
    const float xx = low.dxx[i] + share * (high.dxx[i] - low.dxx[i]);
    const float yy = low.dyy[i] + share * (high.dyy[i] - low.dyy[i]);
    round_blur[i] = 0.5F * (xx + yy);
    axis_blur[i] = 0.5F * (xx - yy);
    diagonal_blur[i] = low.dxy[i] + share * (high.dxy[i] - low.dxy[i]);
    pattern[i] = low.value[i] + share * (high.value[i] - low.value[i]);
  }
}

/// The eight partial sums, in a fixed tree.
inline double SumOf(const float* partial) {
  double sums[4];
  for (int k = 0; k < 4; ++k)
    sums[k] = static_cast<double>(partial[k]) + static_cast<double>(partial[k + 4]);
  return (sums[0] + sums[2]) + (sums[1] + sums[3]);
}

template <int... kColumns>
void SumMoments(const float* const* columns, const float* weights, int first, int count,
                double* moments) {
  constexpr int kCount = sizeof...(kColumns);
  constexpr int kOf[kCount] = {kColumns...};
  float sums[kCount][kCount][kBlock] = {};
  for (int begin = first; begin < first + count; begin += kBlock) {
    const float* const w = weights + begin;
    for (int i = 0; i < kCount; ++i) {
      const float* const a = columns[kOf[i]] + begin;
      float weighted[kBlock];
      for (int k = 0; k < kBlock; ++k)
        weighted[k] = w[k] * a[k];
      for (int j = i; j < kCount; ++j) {
        const float* const b = columns[kOf[j]] + begin;
        for (int k = 0; k < kBlock; ++k)
          sums[i][j][k] += weighted[k] * b[k];
      }
    }
  }
  for (int i = 0; i < kCount; ++i) {
    for (int j = i; j < kCount; ++j)
      moments[kOf[i] * kNumColumns + kOf[j]] = SumOf(sums[i][j]);
  }
}

void FindResiduals(const float* const* columns, const float* factors, int first, int count,
                   float* residuals) {
  for (int i = first; i < first + count; ++i) {
    float left = columns[kScene][i];
    left -= factors[kPattern] * columns[kPattern][i];
    left -= factors[kOne];
    left -= factors[kMoveX] * columns[kMoveX][i];
    left -= factors[kMoveY] * columns[kMoveY][i];
    left -= factors[kTurn] * columns[kTurn][i];
    left -= factors[kGrow] * columns[kGrow][i];
    left -= factors[kRoundBlur] * columns[kRoundBlur][i];
    left -= factors[kAxisBlur] * columns[kAxisBlur][i];
    left -= factors[kDiagonalBlur] * columns[kDiagonalBlur][i];
    residuals[i] = left;
  }
}

void FindWeights(const float* const* columns, const float* residuals, const float* presence,
                 const float* inside, const PixelNoise& noise, int count, float* weights) {
  const float* const gx = columns[kMoveX];
  const float* const gy = columns[kMoveY];
  const float* const scene = columns[kScene];
  for (int i = 0; i < count; ++i) {
    const float slope = gx[i] * gx[i] + gy[i] * gy[i];
    const float grey = scene[i] + noise.grey_offset;
    const float bright = grey > 0.0F ? grey : 0.0F;
    const float common = noise.base + noise.per_grey * bright;
    const float square = residuals[i] * residuals[i] * noise.inverse_reach_square;
    const float share = 1.0F - square / (common + noise.mismatch * slope);
    const float robust = share > 0.0F ? share * share : 0.0F;
    weights[i] = presence[i] * inside[i] * robust / (common + noise.per_slope * slope);
  }
}

/// @tparam kColumns  those that the influence is made of.
template <int... kColumns>
void FindInfluence(const float* const* columns, const float (*factors)[kNumColumns],
                   const float* weights, const float* residuals, int first, int count,
                   float* const* influence, double* moved) {
  float sums[kNumPoseColumns][kBlock] = {};
  for (int begin = first; begin < first + count; begin += kBlock) {
    float values[kNumPoseColumns][kBlock];
    for (int k = 0; k < kNumPoseColumns; ++k) {
      for (int lane = 0; lane < kBlock; ++lane)
        values[k][lane] = factors[k][kOne];
    }
    for (const int column : {kColumns...}) {
      const float* const from = columns[column] + begin;
      for (int k = 0; k < kNumPoseColumns; ++k) {
        const float factor = factors[k][column];
        for (int lane = 0; lane < kBlock; ++lane)
          values[k][lane] += factor * from[lane];
      }
    }
    for (int k = 0; k < kNumPoseColumns; ++k) {
      float* const out = influence[k] + begin;
      for (int lane = 0; lane < kBlock; ++lane) {
        const float value = weights[begin + lane] * values[k][lane];
        out[lane] = value;
        sums[k][lane] += value * residuals[begin + lane];
      }
    }
  }
  for (int k = 0; k < kNumPoseColumns; ++k)
    moved[k] = SumOf(sums[k]);
}

/// Neighbouring samples add to the same cells, and each addition waits for the one before. So samples a
/// quarter of the batch apart take turns.
constexpr int kTurns = 4;

/// Adds share times `values` to `to`, which the compiler need not fear to be the same.
template <int kCount>
inline void AddTo(float* to, float share, const float (&values)[kCount]) {
  float sums[kCount];
  for (int i = 0; i < kCount; ++i)
    sums[i] = to[i] + share * values[i];
  for (int i = 0; i < kCount; ++i)
    to[i] = sums[i];
}

template <int kTaps>
inline void AddSample(std::int32_t column, std::int32_t row, const float* influence,
                      const float* across, const float* down, InfluenceCells cells) {
  float of_row[kTaps * kNumPoseColumns];
  for (int k = 0; k < kTaps; ++k) {
    for (int i = 0; i < kNumPoseColumns; ++i)
      of_row[k * kNumPoseColumns + i] = across[k] * influence[i];
  }
  const std::int32_t runs = cells.width / kCellRun;
  for (int j = 0; j < kTaps; ++j) {
    const std::int32_t y = row + j;
    AddTo(cells.cells + (y * cells.width + column) * kNumPoseColumns, down[j], of_row);
    cells.marks[y * runs + column / kCellRun] = 1;
    cells.marks[y * runs + (column + kTaps - 1) / kCellRun] = 1;
  }
}

template <int kTaps>
void SpreadOverScene(const ImagePlace& place, const float* x, const float* y, int count,
                     const float* const* influence, const float* strength,
                     const InfluenceCells& cells) {
  Taps<kTaps> taps;
  float inside[kBatch];
  for (int begin = 0; begin < count; begin += kBatch) {
    const int size = count - begin < kBatch ? count - begin : kBatch;
    PlaceTaps<kTaps>(cells.width, cells.height, place, x + begin, y + begin, size, taps, inside);
    const int quarter = size / kTurns;
    for (int n = 0; n < size; ++n) {
      const int i = n % kTurns * quarter + n / kTurns;
      float own[kNumPoseColumns];
      for (int k = 0; k < kNumPoseColumns; ++k)
        own[k] = inside[i] * strength[begin + i] * influence[k][begin + i];
      AddSample<kTaps>(taps.column[i], taps.row[i], own, taps.across[i], taps.down[i], cells);
    }
  }
}

/// Products of the numbers of a run of cells, pixel i of a run into sum i; leaves the cells 0.
inline void AddRun(float* first, float (&sums)[kNumPoseColumns][kNumPoseColumns][kCellRun]) {
  float values[kNumPoseColumns][kCellRun];
  for (int i = 0; i < kCellRun; ++i) {
    for (int a = 0; a < kNumPoseColumns; ++a)
      values[a][i] = first[i * kNumPoseColumns + a];
  }
  for (int i = 0; i < kCellRun * kNumPoseColumns; ++i)
    first[i] = 0.0F;
  for (int a = 0; a < kNumPoseColumns; ++a) {
    for (int b = a; b < kNumPoseColumns; ++b) {
      for (int i = 0; i < kCellRun; ++i)
        sums[a][b][i] += values[a][i] * values[b][i];
    }
  }
}

void AddProducts(const float (&sums)[kNumPoseColumns][kNumPoseColumns][kCellRun],
                 double* products) {
  for (int a = 0; a < kNumPoseColumns; ++a) {
    for (int b = a; b < kNumPoseColumns; ++b) {
      const double sum = SumOf(sums[a][b]) + SumOf(sums[a][b] + kBlock);
      products[a * kNumPoseColumns + b] += sum;
      if (a != b) products[b * kNumPoseColumns + a] += sum;
    }
  }
}

void SumCells(const InfluenceCells& cells, double* products) {
  const std::int32_t num_runs = cells.width / kCellRun * cells.height;
  float sums[kNumPoseColumns][kNumPoseColumns][kCellRun] = {};
  for (std::int32_t run = 0; run < num_runs; ++run) {
    if (cells.marks[run] == 0) continue;
    cells.marks[run] = 0;
    AddRun(cells.cells + run * kCellRun * kNumPoseColumns, sums);
  }
  AddProducts(sums, products);
}

void SumInfluence(int count, const float* const* influence, const float* strength, double factor,
                  double* products) {
  float sums[kNumPoseColumns][kNumPoseColumns][kBlock] = {};
  for (int begin = 0; begin < count; begin += kBlock) {
    float own[kNumPoseColumns][kBlock];
    for (int a = 0; a < kNumPoseColumns; ++a) {
      for (int lane = 0; lane < kBlock; ++lane)
        own[a][lane] = strength[begin + lane] * influence[a][begin + lane];
    }
    for (int a = 0; a < kNumPoseColumns; ++a) {
      for (int b = a; b < kNumPoseColumns; ++b) {
        for (int lane = 0; lane < kBlock; ++lane)
          sums[a][b][lane] += own[a][lane] * own[b][lane];
      }
    }
  }
  for (int a = 0; a < kNumPoseColumns; ++a) {
    for (int b = a; b < kNumPoseColumns; ++b) {
      const double sum = factor * SumOf(sums[a][b]);
      products[a * kNumPoseColumns + b] += sum;
      if (a != b) products[b * kNumPoseColumns + a] += sum;
    }
  }
}

void SumOverPattern(const std::int32_t* places, int count, const float* const* influence,
                    const float* strength, float* cells, int num_cells, double* products) {
  constexpr float kTaps[3] = {1.0F / 6.0F, 4.0F / 6.0F, 1.0F / 6.0F};
  const int quarter = count / kTurns;
  for (int n = 0; n < count; ++n) {
    const int i = n % kTurns * quarter + n / kTurns;
    float own[kNumPoseColumns];
    for (int k = 0; k < kNumPoseColumns; ++k)
      own[k] = strength[i] * influence[k][i];
    for (int place = 0; place < 9; ++place)
      AddTo(cells + places[9 * i + place] * kNumPoseColumns, kTaps[place / 3] * kTaps[place % 3],
            own);
  }
  float sums[kNumPoseColumns][kNumPoseColumns][kCellRun] = {};
  for (int first = 0; first < num_cells; first += kCellRun)
    AddRun(cells + first * kNumPoseColumns, sums);
  AddProducts(sums, products);
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const StripKernels kStripKernels = {
    Sample<4, std::uint8_t>,
    Sample<4, std::uint16_t>,
    Sample<4, float>,
    Sample<8, std::uint8_t>,
    Sample<8, std::uint16_t>,
    Sample<8, float>,
    Blend,
    SumMoments<kMoveX, kMoveY, kTurn, kGrow, kRoundBlur, kAxisBlur, kDiagonalBlur, kPattern, kOne,
               kScene>,
    SumMoments<kMoveX, kMoveY, kTurn, kGrow, kRoundBlur, kPattern, kOne, kScene>,
    SumMoments<kPattern, kOne, kScene>,
    FindResiduals,
    FindWeights,
    FindInfluence<kMoveX, kMoveY, kTurn, kGrow, kRoundBlur, kAxisBlur, kDiagonalBlur, kPattern>,
    FindInfluence<kMoveX, kMoveY, kTurn, kGrow, kRoundBlur, kPattern>,
    SpreadOverScene<4>,
    SpreadOverScene<8>,
    SumCells,
    SumInfluence,
    SumOverPattern};
}

}  // namespace orvandel::shape
