#include "image/row_kernels.h"

#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "image/gradients.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel {
namespace {

class ImageRowKernelsTest : public test::AtEverySimdLevel {
 protected:
  std::vector<std::uint16_t> RandomRow(int width) {
    std::vector<std::uint16_t> row;
    for (int x = 0; x < width; ++x)
      row.push_back(static_cast<std::uint16_t>(random_.OneIn(4) ? 4095 : random_.Integer(0, 4095)));
    return row;
  }

  const ImageRowKernels& kernels_ = ImageRowKernelsOf(GetParam());
  test::UniformRandom random_{9};
};
ORVANDEL_AT_EVERY_SIMD_LEVEL(ImageRowKernelsTest);

TEST_P(ImageRowKernelsTest, GradientsAreSobelSums) {
  for (int count = 1; count < 80; ++count) {
    // A column more to either side.
    const auto above = RandomRow(count + 2);
    const auto centre = RandomRow(count + 2);
    const auto below = RandomRow(count + 2);
    std::vector<std::int32_t> packed(static_cast<std::size_t>(count) + 2, -1);
    kernels_.gradient_row(above.data() + 1, centre.data() + 1, below.data() + 1, count,
                          packed.data() + 1);
    EXPECT_EQ(packed.front(), -1);
    EXPECT_EQ(packed.back(), -1);
    for (std::size_t x = 1; x + 1 < packed.size(); ++x) {
      const int gx = above[x + 1] + 2 * centre[x + 1] + below[x + 1] - above[x - 1] -
                     2 * centre[x - 1] - below[x - 1];
      const int gy =
          below[x - 1] + 2 * below[x] + below[x + 1] - above[x - 1] - 2 * above[x] - above[x + 1];
      EXPECT_EQ(GradientX(packed[x]), gx);
      EXPECT_EQ(GradientY(packed[x]), gy);
    }
  }
}

TEST_P(ImageRowKernelsTest, HalvesAreRoundedMeansOfFour) {
  for (int width = 1; width < 70; ++width) {
    const auto upper = RandomRow(2 * width);
    const auto lower = RandomRow(2 * width);
    std::vector<std::uint16_t> half(static_cast<std::size_t>(width));
    kernels_.halve_rows(upper.data(), lower.data(), width, half.data());
    for (std::size_t x = 0; x < half.size(); ++x) {
      const double mean =
          0.25 * (upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1]);
      EXPECT_EQ(half[x], static_cast<int>(mean + 0.5));
    }
  }
}

TEST_P(ImageRowKernelsTest, SecondDifferencesAreTheMasksSizes) {
  constexpr int kMask[3][3] = {{1, -2, 1}, {-2, 4, -2}, {1, -2, 1}};
  for (int width = 3; width < 70; ++width) {
    const std::vector<std::vector<std::uint16_t>> rows = {RandomRow(width), RandomRow(width),
                                                          RandomRow(width)};
    std::vector<std::uint16_t> sizes(static_cast<std::size_t>(width - 2));
    kernels_.difference_row(rows[0].data(), rows[1].data(), rows[2].data(), width, sizes.data());
    for (std::size_t x = 0; x < sizes.size(); ++x) {
      int sum = 0;
      for (std::size_t i = 0; i < 9; ++i)
        sum += kMask[i / 3][i % 3] * rows[i / 3][x + i % 3];
      EXPECT_EQ(sizes[x], std::abs(sum));
    }
  }
}

TEST_P(ImageRowKernelsTest, WidenedBytesAreSixteenTimesAsLarge) {
  for (int width = 1; width < 70; ++width) {
    std::vector<std::uint8_t> bytes;
    for (int x = 0; x < width; ++x)
      bytes.push_back(static_cast<std::uint8_t>(random_.Integer(0, 255)));
    std::vector<std::uint16_t> units(bytes.size());
    kernels_.widen_row(bytes.data(), width, units.data());
    for (std::size_t x = 0; x < bytes.size(); ++x)
      EXPECT_EQ(units[x], 16 * bytes[x]);
  }
}

}  // namespace
}  // namespace orvandel
