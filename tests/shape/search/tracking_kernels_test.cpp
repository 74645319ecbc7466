#include "shape/search/tracking_kernels.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "image/gradients.h"
#include "tests/reference/tracking.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

/// A scene of random gradients in patches, so that there are peaks, plateaus and flat stretches.
reference::Gradients RandomGradients(test::UniformRandom& random, int width, int height) {
  reference::Gradients gradients;
  gradients.width = width;
  gradients.height = height;
  for (int i = 0; i < width * height; ++i) {
    gradients.x.push_back(random.OneIn(4) ? 0 : random.Integer(-16380, 16380));
    gradients.y.push_back(random.OneIn(4) ? 0 : random.Integer(-16380, 16380));
  }
  return gradients;
}

class TrackingKernelsTest : public test::AtEverySimdLevel {
 protected:
  const TrackingKernels& kernels_ = TrackingKernelsOf(GetParam());
};
ORVANDEL_AT_EVERY_SIMD_LEVEL(TrackingKernelsTest);

TEST_P(TrackingKernelsTest, AgreeWithTheReferenceFormBitForBit) {
  test::UniformRandom random(7);
  for (int round = 0; round < 60; ++round) {
    const int width = random.Integer(4, 60);
    const int height = random.Integer(4, 60);
    const reference::Gradients gradients = RandomGradients(random, width, height);
    std::vector<std::int32_t> packed;
    for (std::size_t i = 0; i < gradients.x.size(); ++i)
      packed.push_back(PackGradient(gradients.x[i], gradients.y[i]));

    const auto size = static_cast<std::size_t>(random.Integer(1, 70));
    const std::size_t padded = (size + kLanes - 1) / kLanes * kLanes;
    std::array<std::vector<float>, 4> model;
    std::vector<reference::ModelPoint> points;
    for (std::size_t i = 0; i < padded; ++i) {
      const double turn = random.Real(-kPi, kPi);
      const reference::ModelPoint point = {
          static_cast<float>(random.Real(-60, 60)), static_cast<float>(random.Real(-60, 60)),
          static_cast<float>(std::cos(turn)), static_cast<float>(std::sin(turn))};
      model[0].push_back(point.x);
      model[1].push_back(point.y);
      model[2].push_back(point.normal_x);
      model[3].push_back(point.normal_y);
      if (i < size) points.push_back(point);
    }
    const double angle = random.Real(-kPi, kPi);
    const double scale = random.Real(0.1, 0.6);
    const reference::Frame frame = {
        static_cast<float>(random.Real(0, width)),   static_cast<float>(random.Real(0, height)),
        static_cast<float>(scale * std::cos(angle)), static_cast<float>(scale * std::sin(angle)),
        static_cast<float>(std::cos(angle)),         static_cast<float>(std::sin(angle))};
    const reference::Search search = {static_cast<float>(random.Real(0, 6000)), 0.5868F,
                                      random.Integer(-1, 1), random.Integer(1, 3), random.OneIn(2)};

    std::array<std::vector<float>, 8> arrays;
    for (auto& array : arrays)
      array.assign(padded, -1.0F);
    const MeasuredArrays measured = {arrays[0].data(), arrays[1].data(), arrays[2].data(),
                                     arrays[3].data(), arrays[4].data(), arrays[5].data(),
                                     arrays[6].data(), arrays[7].data()};
    const PointArrays point_arrays = {model[0].data(), model[1].data(), model[2].data(),
                                      model[3].data(), padded,          size};
    const EdgeSampling sampling = {packed.data(),
                                   width,
                                   height,
                                   search.least_slope,
                                   search.least_cosine_square,
                                   static_cast<float>(search.sign),
                                   search.range};
    const auto measure = search.is_bilinear ? kernels_.measure_between : kernels_.measure_nearest;
    measure(point_arrays,
            {frame.x, frame.y, frame.cosine, frame.sine, frame.turn_cosine, frame.turn_sine},
            sampling, measured);

    std::vector<reference::Met> expected;
    for (std::size_t i = 0; i < size; ++i) {
      expected.push_back(reference::Measure(points[i], frame, search, gradients));
      const reference::Met& met = expected.back();
      EXPECT_EQ(measured.offset[i], met.offset);
      EXPECT_EQ(measured.slope[i], met.slope);
      EXPECT_EQ(measured.found[i], met.is_found ? 1.0F : 0.0F);
      EXPECT_EQ(measured.visible[i], met.is_visible ? 1.0F : 0.0F);
      EXPECT_EQ(measured.normal_x[i], met.normal_x);
      EXPECT_EQ(measured.normal_y[i], met.normal_y);
      EXPECT_EQ(measured.turn[i], met.turn);
      EXPECT_EQ(measured.grow[i], met.grow);
    }

    std::vector<double> fit(kNumFitSums);
    kernels_.sum_fit(measured, size, padded, 2.5F, fit.data());
    EXPECT_EQ(fit, reference::FitSums(expected, 2.5F));

    const std::array<float, 4> step = {0.25F, -0.5F, 0.01F, -0.02F};
    std::vector<double> credit(kNumCreditSums);
    kernels_.sum_credit(measured, size, padded, step.data(), credit.data());
    EXPECT_EQ(credit, reference::CreditSums(expected, step));
  }
}

}  // namespace
}  // namespace orvandel::shape
