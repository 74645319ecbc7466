#include "shape/search/response_kernels.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "image/gradients.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

class ResponseKernelsTest : public test::AtEverySimdLevel {
 protected:
  const ResponseKernels& kernels_ = ResponseKernelsOf(GetParam());
};
ORVANDEL_AT_EVERY_SIMD_LEVEL(ResponseKernelsTest);

TEST_P(ResponseKernelsTest, SquaresAreThoseOfTheGradients) {
  test::UniformRandom random(1);
  for (int width = 1; width < 70; ++width) {
    std::vector<std::int32_t> packed;
    std::vector<std::int32_t> expected;
    for (int x = 0; x < width; ++x) {
      const int gx = random.Integer(-16380, 16380);
      const int gy = random.Integer(-16380, 16380);
      packed.push_back(PackGradient(gx, gy));
      expected.push_back(gx * gx + gy * gy);
    }
    std::vector<std::int32_t> squares(packed.size());
    kernels_.square_row(packed.data(), width, squares.data());
    EXPECT_EQ(squares, expected);
  }
}

/// One of the eight neighbours that the angle of a gradient points to, or away from.
std::array<int, 2> StepAlong(int gx, int gy) {
  const double octants = std::atan2(gy, gx) / (0.25 * kPi);
  const double angle = std::round(octants) * 0.25 * kPi;
  return {static_cast<int>(std::lround(std::cos(angle))),
          static_cast<int>(std::lround(std::sin(angle)))};
}

TEST_P(ResponseKernelsTest, PeaksAreWhereNoNeighbourAlongTheGradientIsStronger) {
  test::UniformRandom random(2);
  constexpr int kLeast = 40;
  for (int width = 3; width < 110; ++width) {
    const auto columns = static_cast<std::size_t>(width);
    std::array<std::vector<std::int32_t>, 3> packed;
    std::array<std::vector<std::int32_t>, 3> squares;
    for (std::size_t row = 0; row < 3; ++row) {
      for (int x = 0; x < width; ++x)
        packed[row].push_back(PackGradient(random.Integer(-9, 9), random.Integer(-9, 9)));
      squares[row].resize(columns);
      kernels_.square_row(packed[row].data(), width, squares[row].data());
    }
    std::vector<std::uint8_t> marks(columns, 7);
    kernels_.mark_peaks({squares[0].data(), squares[1].data(), squares[2].data()}, packed[1].data(),
                        width, kLeast, marks.data());
    for (int x = 0; x < width; ++x) {
      const auto column = static_cast<std::size_t>(x);
      const int square = squares[1][column];
      bool is_peak = x > 0 && x + 1 < width && square > kLeast;
      if (is_peak) {
        auto [dx, dy] = StepAlong(GradientX(packed[1][column]), GradientY(packed[1][column]));
        // Of two that are equal, the one further right, or straight below, is the peak.
        if (dx < 0 || (dx == 0 && dy < 0)) dx = -dx, dy = -dy;
        const auto at = [&squares, x](int step_x, int step_y) {
          return squares[static_cast<std::size_t>(1 + step_y)]
                        [static_cast<std::size_t>(x + step_x)];
        };
        is_peak = square >= at(-dx, -dy) && square > at(dx, dy);
      }
      EXPECT_EQ(marks[column], is_peak ? 1 : 0) << width << ' ' << x;
    }
  }
}

TEST_P(ResponseKernelsTest, PartedVotesStandInTheMapOfTheirDirection) {
  test::UniformRandom random(3);
  for (int width = 1; width < 70; ++width) {
    std::vector<std::uint8_t> cells;
    for (int i = 0; i < kDirectionBins * width; ++i)
      cells.push_back(static_cast<std::uint8_t>(random.Integer(0, 255)));
    const std::ptrdiff_t plane_size = width + 5;
    std::vector<std::uint8_t> planes(static_cast<std::size_t>(kDirectionBins * plane_size), 99);
    kernels_.part_votes(cells.data(), width, planes.data(), plane_size);
    for (std::size_t i = 0; i < planes.size(); ++i) {
      const auto bin = i / static_cast<std::size_t>(plane_size);
      const auto x = i % static_cast<std::size_t>(plane_size);
      const bool is_inside = x < static_cast<std::size_t>(width);
      EXPECT_EQ(planes[i], is_inside ? cells[kDirectionBins * x + bin] : 99);
    }
  }
}

}  // namespace
}  // namespace orvandel::shape
