// Positions and directions of edge points against drawn edges whose truth is known: pixels are the
// exact share of their area on the bright side, rounded to whole grey levels.

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "shape/edges/edge_detection.h"
#include "tests/shape/edges/edge_images.h"

namespace orvandel::test {
namespace {

constexpr int kSide = 32;
constexpr int kNumAngles = 120;
constexpr int kNumOffsets = 6;

struct Errors {
  double sum_of_squares = 0;
  double largest = 0;
  int count = 0;

  void Add(double error) {
    sum_of_squares += error * error;
    largest = std::fmax(largest, std::fabs(error));
    ++count;
  }
  double Rms() const { return std::sqrt(sum_of_squares / count); }
};

struct EdgeErrors {
  Errors position;   // across the edge, pixels
  Errors direction;  // radians
};

/// The edge points of straight edges through the image's middle, at all angles and fractions of a
/// pixel.
template <typename Pixel, typename Profile>
EdgeErrors ErrorsOfStraightEdges(const Profile& profile, double dark, double bright,
                                 float least_strength = shape::edges::kUsualLeastStrength) {
  EdgeErrors errors;
  shape::edges::EdgeWorkspace workspace;
  shape::edges::EdgePoints points;
  const double middle = (kSide - 1) / 2.0;
  for (int i = 0; i < kNumAngles; ++i) {
    for (int j = 0; j < kNumOffsets; ++j) {
      StraightEdge edge;
      edge.angle = (i + 0.5) * kTwoPi / kNumAngles;
      edge.distance = std::cos(edge.angle) * middle + std::sin(edge.angle) * middle +
                      static_cast<double>(j) / kNumOffsets;
      const auto image = PaintedImage<Pixel>(kSide, kSide, [&](int x, int y) {
        return dark + (bright - dark) * profile(edge.angle, edge.Signed(x, y));
      });
      DetectEdgePoints(image.View(), least_strength, workspace, points);
      EXPECT_GE(points.All().size(), 17U) << "angle " << edge.angle;
      for (const shape::edges::EdgePoint& p : points.All()) {
        errors.position.Add(edge.Signed(static_cast<double>(p.x), static_cast<double>(p.y)));
        errors.direction.Add(std::remainder(static_cast<double>(p.direction) - edge.angle, kTwoPi));
      }
    }
  }
  return errors;
}

/// An edge blurred by a Gaussian, integrated over the pixel by five points of Gauss and Legendre
/// each way.
double BlurredShare(double angle, double depth, double sigma) {
  constexpr double kNodes[] = {-0.9061798459386640, -0.5384693101056831, 0, 0.5384693101056831,
                               0.9061798459386640};
  constexpr double kWeights[] = {0.2369268850561891, 0.4786286704993665, 0.5688888888888889,
                                 0.4786286704993665, 0.2369268850561891};
  double share = 0;
  for (int i = 0; i < 5; ++i) {
    for (int j = 0; j < 5; ++j) {
      const double d = depth + (std::cos(angle) * kNodes[i] + std::sin(angle) * kNodes[j]) / 2;
      share += kWeights[i] * kWeights[j] / 4 * 0.5 * std::erfc(-d / (sigma * std::sqrt(2.0)));
    }
  }
  return share;
}

double Degrees(double radians) {
  return radians * 180 / kPi;
}

TEST(EdgePrecision, SharpEdgesLieWithinAHundredthOfAPixel) {
  const EdgeErrors errors = ErrorsOfStraightEdges<std::uint8_t>(CoveredShare, 60, 190);
  EXPECT_LT(errors.position.Rms(), 0.006);
  EXPECT_LT(errors.position.largest, 0.02);
  EXPECT_LT(Degrees(errors.direction.Rms()), 0.7);
  EXPECT_LT(Degrees(errors.direction.largest), 2.0);
}

TEST(EdgePrecision, WeakEdgesAreOffByTheGreyLevelsRounding) {
  const EdgeErrors errors = ErrorsOfStraightEdges<std::uint8_t>(CoveredShare, 100, 150);
  EXPECT_LT(errors.position.Rms(), 0.01);
  EXPECT_LT(Degrees(errors.direction.Rms()), 0.7);
}

TEST(EdgePrecision, BlurredEdgesLieWithinAHundredthOfAPixel) {
  for (const double sigma : {0.4, 0.7, 1.0, 1.3}) {
    SCOPED_TRACE(sigma);
    const auto profile = [sigma](double angle, double depth) {
      return BlurredShare(angle, depth, sigma);
    };
    const EdgeErrors errors = ErrorsOfStraightEdges<std::uint8_t>(profile, 60, 190);
    EXPECT_LT(errors.position.Rms(), 0.01);
    EXPECT_LT(Degrees(errors.direction.Rms()), 0.3);
  }
}

TEST(EdgePrecision, SixteenBitsLeaveTheErrorOfTheMethodAlone) {
  for (const double sigma : {1.0, 2.0, 3.0}) {
    SCOPED_TRACE(sigma);
    const auto profile = [sigma](double angle, double depth) {
      return BlurredShare(angle, depth, sigma);
    };
    const EdgeErrors errors = ErrorsOfStraightEdges<std::uint16_t>(profile, 10000, 50000, 2000.0F);
    EXPECT_LT(errors.position.Rms(), 0.004);
    EXPECT_LT(Degrees(errors.direction.Rms()), 0.2);
  }
}

TEST(EdgePrecision, StepsHaveThreeEighthsOfTheirHeightAsStrength) {
  // Seen straight on, half way between two pixels or in the middle of one.
  for (const double fraction : {0.0, 0.5}) {
    const auto image = PaintedImage<std::uint8_t>(
        32, 32, [&](int x, int) { return 40 + 160 * CoveredShare(0, x - (15.0 + fraction)); });
    shape::edges::EdgeWorkspace workspace;
    shape::edges::EdgePoints points;
    DetectEdgePoints(image.View(), shape::edges::kUsualLeastStrength, workspace, points);
    ASSERT_EQ(points.All().size(), 26U);
    for (const shape::edges::EdgePoint& p : points.All()) {
      EXPECT_EQ(p.strength, 0.375F * 160);
      EXPECT_EQ(p.x, static_cast<float>(15 + fraction));
      EXPECT_EQ(p.direction, 0.0F);
    }
  }
}

TEST(EdgePrecision, DiscsHaveTheirRadius) {
  constexpr int kDiscSide = 160;
  constexpr int kSteps =
      16;  // a side of a pixel is sampled so often: shares are exact to a thousandth
  shape::edges::EdgeWorkspace workspace;
  shape::edges::EdgePoints points;
  for (const double radius : {20.0, 35.3, 70.0}) {
    SCOPED_TRACE(radius);
    const double centre_x = 79.3;
    const double centre_y = 80.6;
    const auto image = PaintedImage<std::uint8_t>(kDiscSide, kDiscSide, [&](int x, int y) {
      int inside = 0;
      for (int i = 0; i < kSteps * kSteps; ++i) {
        const double px = x - 0.5 + (i % kSteps + 0.5) / kSteps;
        const double py = y - 0.5 + (i / kSteps + 0.5) / kSteps;
        inside += std::hypot(px - centre_x, py - centre_y) < radius ? 1 : 0;
      }
      return 200.0 - 150.0 * inside / (kSteps * kSteps);
    });
    DetectEdgePoints(image.View(), shape::edges::kUsualLeastStrength, workspace, points);
    Errors position;
    Errors direction;
    for (const shape::edges::EdgePoint& p : points.All()) {
      const double dx = static_cast<double>(p.x) - centre_x;
      const double dy = static_cast<double>(p.y) - centre_y;
      position.Add(std::hypot(dx, dy) - radius);
      // The disc is dark, so that gradients point outwards.
      direction.Add(std::remainder(static_cast<double>(p.direction) - std::atan2(dy, dx), kTwoPi));
    }
    EXPECT_LT(position.Rms(), 0.02);  // smoothing draws an arc inwards by about 0.3 / radius
    EXPECT_LT(Degrees(direction.Rms()), 1.0);
    // One point a column or row of the outline, whichever it crosses more squarely: 8 r sin 45
    // degrees.
    EXPECT_NEAR(static_cast<double>(points.All().size()), 4 * std::sqrt(2.0) * radius, 6);
  }
}

}  // namespace
}  // namespace orvandel::test
