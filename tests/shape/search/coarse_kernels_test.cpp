#include "shape/search/coarse_kernels.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/reference/coarse_search.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

class CoarseKernelsTest : public test::AtEverySimdLevel {
 protected:
  const CoarseKernels& kernels_ = CoarseKernelsOf(GetParam());
};
ORVANDEL_AT_EVERY_SIMD_LEVEL(CoarseKernelsTest);

TEST_P(CoarseKernelsTest, PlacesPointsWhereRotationPutsThem) {
  test::UniformRandom random(1);
  for (const std::size_t padded : {8U, 16U, 24U, 48U, 64U}) {
    std::vector<float> x(padded);
    std::vector<float> y(padded);
    std::vector<float> direction(padded);
    for (std::size_t i = 0; i < padded; ++i) {
      x[i] = static_cast<float>(random.Real(-200, 200));
      y[i] = static_cast<float>(random.Real(-200, 200));
      direction[i] = static_cast<float>(random.Real(8, 24));
    }
    PosePlacing placing = {};
    placing.cosine = static_cast<float>(random.Real(-0.3, 0.3));
    placing.sine = static_cast<float>(random.Real(-0.3, 0.3));
    placing.turn = static_cast<float>(random.Real(8, 24));
    placing.stride = 100;
    placing.plane_size = 7000;
    std::vector<std::int32_t> dx(padded);
    std::vector<std::int32_t> dy(padded);
    std::vector<std::int32_t> offsets(padded);
    kernels_.place_points({x.data(), y.data(), direction.data(), padded}, placing, dx.data(),
                          dy.data(), offsets.data());
    for (std::size_t i = 0; i < padded; ++i) {
      // Nearest within the rounding of the sums.
      EXPECT_NEAR(dx[i], placing.cosine * x[i] - placing.sine * y[i], 0.5 + 0.002);
      EXPECT_NEAR(dy[i], placing.sine * x[i] + placing.cosine * y[i], 0.5 + 0.002);
      const std::int32_t bin = (offsets[i] - dy[i] * placing.stride - dx[i]) / placing.plane_size;
      const double expected = std::remainder(
          static_cast<double>(direction[i] + placing.turn - static_cast<float>(bin)), 16.0);
      EXPECT_NEAR(expected, 0.0, 0.5 + 1e-5);
      EXPECT_GE(bin, 0);
      EXPECT_LT(bin, 16);
    }
  }
}

TEST_P(CoarseKernelsTest, HitsAgreeWithTheReferenceFormToTheLastVote) {
  test::UniformRandom random(2);
  for (int round = 0; round < 60; ++round) {
    const int width = random.Integer(1, 130);
    const int height = random.Integer(1, 12);
    const int first_row = 2 * random.Integer(0, (height - 1) / 2);
    const int num_points = 8 * random.Integer(1, 7);
    const int density = random.Integer(1, 4);
    reference::Maps maps;
    constexpr int kFrame = 18;
    maps.stride = std::max(width, 32) + kFrame;
    maps.origin = kFrame * maps.stride + kFrame;
    maps.votes.resize(static_cast<std::size_t>(maps.stride) *
                          static_cast<std::size_t>(std::max(height, 2) + 2 * kFrame) +
                      kFrame);
    for (auto& votes : maps.votes)
      votes = static_cast<std::uint8_t>(random.OneIn(density) ? random.Integer(0, 4) : 0);
    std::vector<std::int32_t> offsets;
    for (int p = 0; p < num_points; ++p)
      offsets.push_back(random.Integer(-kFrame, kFrame) * maps.stride +
                        random.Integer(-kFrame, kFrame));
    PoseOffsets pose = {};
    pose.offsets = offsets.data();
    std::vector<int> ends;
    std::vector<int> asked;
    std::vector<std::uint8_t> limits;
    for (std::size_t stage = 0; stage < kStages; ++stage) {
      const int groups = (num_points / 8 * static_cast<int>(stage + 1) + 3) / 4;
      ends.push_back(8 * groups);
      pose.ends[stage] = static_cast<std::size_t>(8 * groups);
      // About what the sums are, so that some are below and some above.
      asked.push_back(ends.back() * random.Integer(10, 40) / (10 * density));
      limits.push_back(static_cast<std::uint8_t>(asked.back()));
    }

    const auto num_blocks =
        static_cast<std::size_t>((width + 31) / 32 * ((height - first_row + 1) / 2));
    std::vector<std::uint8_t> sums(num_blocks * kBlockSums, 77);
    std::vector<BlockPlace> places(num_blocks);
    std::vector<CoarseHit> hits(num_blocks * kBlockSums);
    const PositionRange range = {maps.votes.data() + maps.origin, maps.stride, width, first_row,
                                 height};
    hits.resize(
        kernels_.scan(range, pose, limits.data(), {sums.data(), places.data()}, hits.data()));
    std::vector<reference::Position> found;
    for (const CoarseHit& hit : hits)
      found.push_back({hit.x, hit.y, hit.votes});
    EXPECT_EQ(found, reference::Scan(maps, width, first_row, height,
                                     {offsets.begin(), offsets.end()}, ends, asked));
  }
}

}  // namespace
}  // namespace orvandel::shape
