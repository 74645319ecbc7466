#include "shape/refinement/strip_kernels.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "platform/simd_level.h"
#include "tests/reference/strip_kernels.h"
#include "tests/support/same_bits.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape::test {
namespace {

using orvandel::test::AtEverySimdLevel;
using orvandel::test::ForcedSimdLevel;
using orvandel::test::UniformRandom;

testing::AssertionResult SameBits(float a, float b) {
  return orvandel::test::SameBits(static_cast<double>(a), static_cast<double>(b));
}

constexpr int kCount = 208;  // more than three batches of 64, and not a whole number of them

std::vector<float> Random(UniformRandom& random, double low, double high, int count = kCount) {
  std::vector<float> values;
  for (int i = 0; i < count; ++i)
    values.push_back(static_cast<float>(random.Real(low, high)));
  return values;
}

struct Columns {
  std::array<std::vector<float>, kNumColumns> values;
  std::array<float*, kNumColumns> pointers;

  explicit Columns(UniformRandom& random) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = Random(random, -100, 100);
      pointers[i] = values[i].data();
    }
  }
};

class StripKernel : public AtEverySimdLevel {
 protected:
  const StripKernels& kernels_ = StripKernelsOf(ActiveSimdLevel());
};
ORVANDEL_AT_EVERY_SIMD_LEVEL(StripKernel);

template <typename Pixel>
void ExpectSamples(SampleFunction<Pixel> sample, int kernel_width, double white, double tolerance) {
  UniformRandom random(5);
  constexpr int kWidth = 37;
  constexpr int kHeight = 29;
  std::vector<Pixel> pixels;
  for (int i = 0; i < kWidth * kHeight; ++i)
    pixels.push_back(static_cast<Pixel>(random.Real(0, white)));
  const PixelGrid<Pixel> grid = {pixels.data(), kWidth * static_cast<int>(sizeof(Pixel)), kWidth,
                                 kHeight};
  const ImagePlace place = {18.3, 14.1, 0.9, 0.35};
  const std::vector<float> x = Random(random, -24, 24);
  const std::vector<float> y = Random(random, -20, 20);
  std::vector<float> value(kCount);
  std::vector<float> inside(kCount);
  sample(grid, place, x.data(), y.data(), kCount, 100.0F, value.data(), inside.data());
  int num_inside = 0;
  for (std::size_t i = 0; i < kCount; ++i) {
    const double px = static_cast<double>(x[i]);
    const double py = static_cast<double>(y[i]);
    const double expected =
        reference::Sampled(grid, place.x + (place.cosine * px - place.sine * py),
                           place.y + (place.sine * px + place.cosine * py), kernel_width);
    ASSERT_EQ(inside[i], std::isnan(expected) ? 0.0F : 1.0F) << i;
    if (std::isnan(expected)) continue;
    ++num_inside;
    ASSERT_NEAR(static_cast<double>(value[i]), expected - 100.0, tolerance) << i;
  }
  EXPECT_GT(num_inside, kCount / 4);
  EXPECT_LT(num_inside, kCount);
}

// Weights and sums in single precision: some ten roundings of 6e-8 of the largest value.
TEST_P(StripKernel, SamplesWithTheBSpline) {
  ExpectSamples(kernels_.sample_8, 1, 255, 255 * 1e-6);
  ExpectSamples(kernels_.sample_16, 1, 65535, 65535 * 1e-6);
  ExpectSamples(kernels_.sample_float, 1, 255, 255 * 1e-6);
}

TEST_P(StripKernel, SamplesWithTheBSplineOfDoubledWidth) {
  ExpectSamples(kernels_.sample_wide_8, 2, 255, 255 * 1e-6);
  ExpectSamples(kernels_.sample_wide_16, 2, 65535, 65535 * 1e-6);
  ExpectSamples(kernels_.sample_wide_float, 2, 255, 255 * 1e-6);
}

// The B-spline reproduces straight lines, so a sample of a plane is the plane's value.
TEST_P(StripKernel, ReproducesAPlane) {
  constexpr int kSide = 40;
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x)
      pixels.push_back(static_cast<std::uint8_t>(2 * x + 3 * y + 5));
  }
  const PixelGrid<std::uint8_t> grid = {pixels.data(), kSide, kSide, kSide};
  UniformRandom random(8);
  const std::vector<float> x = Random(random, -15, 15);
  const std::vector<float> y = Random(random, -15, 15);
  std::vector<float> value(kCount);
  std::vector<float> inside(kCount);
  for (const auto sample : {kernels_.sample_8, kernels_.sample_wide_8}) {
    sample(grid, {19.25, 19.5, 1.0, 0.0}, x.data(), y.data(), kCount, 0.0F, value.data(),
           inside.data());
    for (std::size_t i = 0; i < kCount; ++i) {
      const double plane =
          2 * (19.25 + static_cast<double>(x[i])) + 3 * (19.5 + static_cast<double>(y[i])) + 5;
      ASSERT_EQ(inside[i], 1.0F);
      ASSERT_NEAR(static_cast<double>(value[i]), plane, 255 * 1e-6);
    }
  }
}

TEST_P(StripKernel, SumsProductsInEightPartialSums) {
  UniformRandom random(6);
  const Columns columns(random);
  const std::vector<float> weights = Random(random, 0, 1);
  double moments[kNumMoments] = {};
  for (const auto& [first, count] : {std::pair{0, 8}, {8, 64}, {16, 192}}) {
    kernels_.sum_moments(columns.pointers.data(), weights.data(), first, count, moments);
    for (int i = 0; i < kNumColumns; ++i) {
      for (int j = i; j < kNumColumns; ++j) {
        const double expected =
            reference::Moment(weights.data(), columns.pointers[static_cast<std::size_t>(i)],
                              columns.pointers[static_cast<std::size_t>(j)], first, count);
        ASSERT_TRUE(orvandel::test::SameBits(moments[i * kNumColumns + j], expected));
      }
    }
  }
}

TEST_P(StripKernel, WeighsByTheFormula) {
  UniformRandom random(7);
  const Columns columns(random);
  const std::vector<float> residuals = Random(random, -80, 80);
  std::vector<float> presence(kCount, 1.0F);
  std::vector<float> inside(kCount, 1.0F);
  presence[3] = 0.0F;
  inside[5] = 0.0F;
  const PixelNoise noise = {2.0F, 0.5F, 0.01F, 0.04F, 1.0F / 36.0F, 60.0F};
  std::vector<float> weights(kCount);
  kernels_.find_weights(columns.pointers.data(), residuals.data(), presence.data(), inside.data(),
                        noise, kCount, weights.data());
  for (std::size_t i = 0; i < kCount; ++i) {
    const float expected = reference::Weight(columns.values[kScene][i], columns.values[kMoveX][i],
                                             columns.values[kMoveY][i], residuals[i], noise);
    ASSERT_TRUE(SameBits(weights[i], i == 3 || i == 5 ? 0.0F : expected)) << i;
  }
}

TEST_P(StripKernel, SubtractsEachColumnOnce) {
  UniformRandom random(9);
  const Columns columns(random);
  std::array<float, kNumColumns> factors;
  for (float& factor : factors)
    factor = static_cast<float>(random.Real(-1, 1));
  std::vector<float> residuals(kCount, -1.0F);
  kernels_.find_residuals(columns.pointers.data(), factors.data(), 16, 64, residuals.data());
  for (std::size_t i = 16; i < 80; ++i) {
    double expected =
        static_cast<double>(columns.values[kScene][i]) - static_cast<double>(factors[kOne]);
    for (std::size_t k = 0; k < kNumColumns; ++k) {
      if (k == kOne || k == kScene) continue;
      expected -= static_cast<double>(factors[k]) * static_cast<double>(columns.values[k][i]);
    }
    ASSERT_NEAR(static_cast<double>(residuals[i]), expected, 1e-3);  // ten roundings below 1000
  }
  EXPECT_EQ(residuals[15], -1.0F);
  EXPECT_EQ(residuals[80], -1.0F);
}

/// Cells of an image of 48 x 48 pixels, all 0.
struct Cells {
  static constexpr int kSide = 48;
  std::vector<float> cells = std::vector<float>(kSide * kSide * kNumPoseColumns);
  std::vector<std::uint8_t> marks = std::vector<std::uint8_t>(kSide / kCellRun * kSide);

  InfluenceCells View() { return {cells.data(), marks.data(), kSide, kSide}; }
};

TEST_P(StripKernel, SpreadsInfluenceOverThePixelsThatSamplesAreMadeOf) {
  UniformRandom random(13);
  std::array<std::vector<float>, kNumPoseColumns> influence;
  const float* pointers[kNumPoseColumns];
  for (std::size_t k = 0; k < influence.size(); ++k) {
    influence[k] = Random(random, -1, 1);
    pointers[k] = influence[k].data();
  }
  const std::vector<float> strength(kCount, 1.0F);
  const std::vector<float> x = Random(random, -12, 12);
  const std::vector<float> y = Random(random, -12, 12);
  const ImagePlace place = {23.7, 24.2, 0.8, 0.6};
  std::vector<double> scene_x;
  std::vector<double> scene_y;
  for (std::size_t i = 0; i < kCount; ++i) {
    const double px = static_cast<double>(x[i]);
    const double py = static_cast<double>(y[i]);
    scene_x.push_back(place.x + (place.cosine * px - place.sine * py));
    scene_y.push_back(place.y + (place.sine * px + place.cosine * py));
  }
  Cells cells;
  const auto expect = [&](const std::vector<double>& at_x, const std::vector<double>& at_y,
                          int kernel_width) {
    double products[kNumPoseColumns * kNumPoseColumns] = {};
    kernels_.sum_cells(cells.View(), products);
    for (std::size_t a = 0; a < kNumPoseColumns; ++a) {
      for (std::size_t b = 0; b < kNumPoseColumns; ++b)
        EXPECT_NEAR(products[a * kNumPoseColumns + b],
                    reference::SpreadProduct(at_x, at_y, pointers[a], pointers[b], kernel_width,
                                             Cells::kSide),
                    1e-4);  // single precision, sums up to some tens
    }
    for (const float cell : cells.cells)
      ASSERT_EQ(cell, 0.0F);
    for (const std::uint8_t mark : cells.marks)
      ASSERT_EQ(mark, 0);
  };
  kernels_.spread_over_scene(place, x.data(), y.data(), kCount, pointers, strength.data(),
                             cells.View());
  expect(scene_x, scene_y, 1);
  kernels_.spread_over_scene_wide(place, x.data(), y.data(), kCount, pointers, strength.data(),
                                  cells.View());
  expect(scene_x, scene_y, 2);
}

TEST_P(StripKernel, SumsTheProductsOfInfluences) {
  UniformRandom random(16);
  std::array<std::vector<float>, kNumPoseColumns> influence;
  const float* pointers[kNumPoseColumns];
  for (std::size_t k = 0; k < influence.size(); ++k) {
    influence[k] = Random(random, -1, 1);
    pointers[k] = influence[k].data();
  }
  const std::vector<float> strength = Random(random, 0, 2);
  double products[kNumPoseColumns * kNumPoseColumns] = {};
  kernels_.sum_influence(kCount, pointers, strength.data(), 1.5, products);
  for (std::size_t a = 0; a < kNumPoseColumns; ++a) {
    for (std::size_t b = 0; b < kNumPoseColumns; ++b) {
      double expected = 0.0;
      for (std::size_t i = 0; i < kCount; ++i) {
        const auto square = static_cast<double>(strength[i]) * static_cast<double>(strength[i]);
        expected += 1.5 * square * static_cast<double>(influence[a][i]) *
                    static_cast<double>(influence[b][i]);
      }
      EXPECT_NEAR(products[a * kNumPoseColumns + b], expected, 1e-3);  // sums up to some hundreds
    }
  }
}

// With a number for each pixel of an image the sums are those over the image; where pixels share a number,
// their influence adds up before it is squared.
TEST_P(StripKernel, SumsInfluenceOverThePatternsErrors) {
  UniformRandom random(15);
  std::array<std::vector<float>, kNumPoseColumns> influence;
  const float* pointers[kNumPoseColumns];
  for (std::size_t k = 0; k < influence.size(); ++k) {
    influence[k] = Random(random, -1, 1);
    pointers[k] = influence[k].data();
  }
  constexpr int kSide = 24;
  const std::vector<float> strength(kCount, 1.0F);
  std::vector<double> x;
  std::vector<double> y;
  std::vector<std::int32_t> own;
  std::vector<std::int32_t> by_column;
  for (int i = 0; i < kCount; ++i) {
    const int column = random.Integer(1, kSide - 2);
    const int row = random.Integer(1, kSide - 2);
    x.push_back(column);
    y.push_back(row);
    for (int place = 0; place < 9; ++place) {
      const int at = column + place % 3 - 1;
      own.push_back((row + place / 3 - 1) * kSide + at);
      by_column.push_back(at);
    }
  }
  std::vector<float> cells(kSide * kSide * kNumPoseColumns);
  const auto products_over = [&](const std::vector<std::int32_t>& places, int num_cells) {
    std::array<double, kNumPoseColumns* kNumPoseColumns> products = {};
    kernels_.sum_over_pattern(places.data(), kCount, pointers, strength.data(), cells.data(),
                              num_cells, products.data());
    for (const float cell : cells)
      EXPECT_EQ(cell, 0.0F);
    return products;
  };
  const auto over_pixels = products_over(own, kSide * kSide);
  const auto over_columns = products_over(by_column, 2 * kCellRun);
  // Shares that add up to 1 over the rows leave the columns' weights alone.
  for (std::size_t a = 0; a < kNumPoseColumns; ++a) {
    for (std::size_t b = 0; b < kNumPoseColumns; ++b) {
      const std::size_t at = a * kNumPoseColumns + b;
      EXPECT_NEAR(over_pixels[at],
                  reference::SpreadProduct(x, y, pointers[a], pointers[b], 1, kSide), 1e-4);
      EXPECT_NEAR(over_columns[at], reference::ColumnProduct(x, pointers[a], pointers[b], kSide),
                  1e-4);
    }
  }
}

TEST_P(StripKernel, FindsInfluenceAndWhatResidualsPull) {
  UniformRandom random(14);
  const Columns columns(random);
  const std::vector<float> weights = Random(random, 0, 1);
  const std::vector<float> residuals = Random(random, -1, 1);
  float factors[kNumPoseColumns][kNumColumns];
  for (auto& row : factors) {
    for (float& factor : row)
      factor = static_cast<float>(random.Real(-0.1, 0.1));
  }
  std::array<std::vector<float>, kNumPoseColumns> influence;
  float* pointers[kNumPoseColumns];
  for (std::size_t k = 0; k < influence.size(); ++k) {
    influence[k].resize(kCount);
    pointers[k] = influence[k].data();
  }
  double moved[kNumPoseColumns] = {};
  for (const bool is_round : {false, true}) {
    (is_round ? kernels_.find_round_influence : kernels_.find_influence)(
        columns.pointers.data(), factors, weights.data(), residuals.data(), 16, 96, pointers,
        moved);
    for (std::size_t k = 0; k < kNumPoseColumns; ++k) {
      double pull = 0.0;
      for (std::size_t i = 16; i < 112; ++i) {
        double expected = static_cast<double>(factors[k][kOne]);
        for (std::size_t j = 0; j < kScene; ++j) {
          const bool is_left_out =
              j == kOne || (is_round && (j == kAxisBlur || j == kDiagonalBlur));
          if (!is_left_out)
            expected +=
                static_cast<double>(factors[k][j]) * static_cast<double>(columns.values[j][i]);
        }
        expected *= static_cast<double>(weights[i]);
        ASSERT_NEAR(static_cast<double>(influence[k][i]), expected, 1e-4);  // sums below 100
        pull += expected * static_cast<double>(residuals[i]);
      }
      EXPECT_NEAR(moved[k], pull, 1e-3);
    }
  }
}

TEST(StripKernels, GiveTheSameBitsAtEveryLevel) {
  UniformRandom random(10);
  std::vector<std::uint8_t> pixels;
  for (int i = 0; i < 64 * 64; ++i)
    pixels.push_back(static_cast<std::uint8_t>(random.Integer(0, 255)));
  const PixelGrid<std::uint8_t> grid = {pixels.data(), 64, 64, 64};
  const std::vector<float> x = Random(random, -30, 30);
  const std::vector<float> y = Random(random, -30, 30);
  const std::array<std::vector<float>, 6> low = {Random(random, -99, 99), Random(random, -99, 99),
                                                 Random(random, -99, 99), Random(random, -99, 99),
                                                 Random(random, -99, 99), Random(random, -99, 99)};
  const LevelArrays arrays = {low[0].data(), low[1].data(), low[2].data(),
                              low[3].data(), low[4].data(), low[5].data()};
  const LevelArrays others = {low[5].data(), low[4].data(), low[3].data(),
                              low[2].data(), low[1].data(), low[0].data()};
  std::vector<std::vector<float>> results;
  for (const SimdLevel level : SupportedSimdLevels()) {
    const ForcedSimdLevel forced(level);
    const StripKernels& kernels = StripKernelsOf(ActiveSimdLevel());
    UniformRandom same(11);
    Columns columns(same);
    std::vector<float> inside(kCount);
    std::vector<float> all;
    for (const auto sample : {kernels.sample_8, kernels.sample_wide_8}) {
      sample(grid, {31.7, 30.2, 0.8, -0.5}, x.data(), y.data(), kCount, 3.0F,
             columns.values[kScene].data(), inside.data());
      all.insert(all.end(), columns.values[kScene].begin(), columns.values[kScene].end());
    }
    kernels.blend(arrays, others, 0.3F, x.data(), y.data(), 0.02F, kCount, columns.pointers.data());
    for (const std::vector<float>& column : columns.values)
      all.insert(all.end(), column.begin(), column.end());
    const std::array<float, kNumColumns> factors = {0.1F, 0.2F, 0.3F, 0.4F, 0.5F,
                                                    0.6F, 0.7F, 0.8F, 0.9F, 1.0F};
    std::vector<float> residuals(kCount);
    kernels.find_residuals(columns.pointers.data(), factors.data(), 0, kCount, residuals.data());
    all.insert(all.end(), residuals.begin(), residuals.end());
    results.push_back(all);
  }
  for (const std::vector<float>& result : results) {
    for (std::size_t i = 0; i < result.size(); ++i)
      ASSERT_TRUE(SameBits(result[i], results[0][i])) << i;
  }
}

}  // namespace
}  // namespace orvandel::shape::test
