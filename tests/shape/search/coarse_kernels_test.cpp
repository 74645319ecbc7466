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

TEST_P(CoarseKernelsTest, LimitsAndHitsAgreeWithTheReferenceFormToTheLastVote) {
  test::UniformRandom random(2);
  for (int round = 0; round < 40; ++round) {
    const int num_columns = 32 * random.Integer(1, 5);
    const int num_points = 8 * random.Integer(1, 7);
    const int stride = num_columns + 40;
    const int density = random.Integer(1, 4);
    std::vector<std::uint8_t> maps(static_cast<std::size_t>(stride) * 60);
    for (auto& votes : maps)
      votes = static_cast<std::uint8_t>(random.OneIn(density) ? random.Integer(0, 4) : 0);
    const int origin = 20 * stride + 20;
    std::vector<std::int32_t> offsets;
    for (int p = 0; p < num_points; ++p)
      offsets.push_back(random.Integer(-18, 18) * stride + random.Integer(-18, 18));
    PoseOffsets pose = {};
    pose.offsets = offsets.data();
    std::vector<int> ends;
    for (std::size_t stage = 0; stage < kStages; ++stage) {
      const int groups = (num_points / 8 * static_cast<int>(stage + 1) + 3) / 4;
      ends.push_back(8 * groups);
      pose.ends[stage] = static_cast<std::size_t>(8 * groups);
    }
    VoteRule rule = {};
    std::vector<std::int16_t> outside(static_cast<std::size_t>(num_columns));
    for (auto& number : outside)
      number = static_cast<std::int16_t>(random.OneIn(3) ? random.Integer(0, num_points) : 0);
    const int outside_row = random.Integer(0, num_points / 2);
    std::vector<std::vector<int>> asked;
    for (std::size_t stage = 0; stage < kStages; ++stage) {
      rule.full[stage] = static_cast<std::int16_t>(ends[stage] * random.Integer(60, 250));
      rule.per_point[stage] = static_cast<std::int16_t>(random.Integer(20, 150));
      rule.least[stage] = static_cast<std::int16_t>(ends[stage] * random.Integer(20, 150));
      asked.emplace_back();
      for (const std::int16_t number : outside)
        asked.back().push_back(reference::VotesAsked(rule.full[stage], rule.per_point[stage],
                                                     rule.least[stage], number, outside_row));
    }
    std::vector<std::uint8_t> limits(kStages * static_cast<std::size_t>(num_columns));
    kernels_.limit_columns(outside.data(), num_columns, static_cast<std::int16_t>(outside_row),
                           rule, limits.data());
    for (std::size_t i = 0; i < limits.size(); ++i)
      EXPECT_EQ(limits[i], asked[i / outside.size()][i % outside.size()]);

    std::vector<CoarseHit> hits(2 * static_cast<std::size_t>(num_columns));
    hits.resize(kernels_.scan_rows(maps.data() + origin, stride, pose, limits.data(), num_columns,
                                   hits.data()));
    std::vector<reference::Position> found;
    for (const CoarseHit& hit : hits)
      found.push_back({hit.x, hit.row, hit.votes});
    EXPECT_EQ(found, reference::ScanRows(maps, origin, stride, {offsets.begin(), offsets.end()},
                                         ends, asked));
  }
}

}  // namespace
}  // namespace orvandel::shape
