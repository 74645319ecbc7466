#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "orvandel/classic/mvtools_i.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

constexpr double kHalfPi = kPi / 2;
constexpr double kTolerance = 1e-9;  // radians or pixels; coordinates near 1000 resolve 1e-13

struct Line {
  double angle = 99;
  double offset = 99;
};

struct Points {
  std::vector<double> x;
  std::vector<double> y;

  int size() const { return static_cast<int>(x.size()); }
  void Add(double px, double py) {
    x.push_back(px);
    y.push_back(py);
  }
};

Line Fit(const Points& points) {
  Line line;
  mvt_linear_regression(points.x.data(), points.y.data(), points.size(), 0, &line.angle,
                        &line.offset);
  return line;
}

double Distance(double x, double y, const Line& line) {
  double distance = 99;
  mvt_point2line_dist(x, y, line.angle, line.offset, &distance);
  return distance;
}

Line Bisect(const Line& first, const Line& second) {
  Line line;
  mvt_line_bisect(first.angle, first.offset, second.angle, second.offset, &line.angle,
                  &line.offset);
  return line;
}

/// The angle between two directions of lines, which have no front and back; 0 .. pi/2.
double AngleBetween(double angle1, double angle2) {
  return std::fabs(std::remainder(angle1 - angle2, kPi));
}

bool InRange(double angle) {
  return angle > -kHalfPi && angle <= kHalfPi;
}

TEST(LinearRegression, FindsExactLinesInEveryDirection) {
  for (int degrees = -360; degrees <= 360; ++degrees) {
    const double angle = degrees * kPi / 180;
    Points points;
    for (int t = -20; t <= 30; ++t)
      points.Add(700 + t * std::cos(angle), 300 + t * std::sin(angle));
    const Line line = Fit(points);
    EXPECT_TRUE(InRange(line.angle)) << degrees;
    EXPECT_NEAR(AngleBetween(line.angle, angle), 0, kTolerance) << degrees;
    for (int i = 0; i < points.size(); ++i) {
      const auto at = static_cast<std::size_t>(i);
      EXPECT_NEAR(Distance(points.x[at], points.y[at], line), 0, kTolerance) << degrees;
    }
  }
}

TEST(LinearRegression, OfAHorizontalLineIsExact) {
  const Line line = Fit({{1, 2, 6}, {5, 5, 5}});
  EXPECT_EQ(line.angle, 0.0);
  EXPECT_EQ(line.offset, 5.0);
}

TEST(LinearRegression, OfAVerticalLineIsARightAngle) {
  const Line line = Fit({{4, 4, 4}, {1, 2, 6}});
  EXPECT_EQ(line.angle, kHalfPi);
  EXPECT_NEAR(line.offset, -4.0, kTolerance);
}

TEST(LinearRegression, OfADiagonalHasTheSignsOfTheConvention) {
  const Line falling = Fit({{0, 1, 2}, {1, 2, 3}});  // to the right and down
  EXPECT_NEAR(falling.angle, kPi / 4, kTolerance);
  EXPECT_NEAR(falling.offset, std::sqrt(0.5), kTolerance);  // one pixel below the origin
  const Line rising = Fit({{0, 1, 2}, {3, 2, 1}});
  EXPECT_NEAR(rising.angle, -kPi / 4, kTolerance);
  EXPECT_NEAR(rising.offset, 3 * std::sqrt(0.5), kTolerance);
}

/// Points so close to vertical that the doubled angle rounds to minus pi.
TEST(LinearRegression, NeverGivesMinusARightAngle) {
  const Line line = Fit({{1e-200, -1e-200}, {-1, 1}});
  EXPECT_EQ(line.angle, kHalfPi);
}

TEST(LinearRegression, OfOnePointIsHorizontalThroughIt) {
  const Line line = Fit({{3}, {7}});
  EXPECT_EQ(line.angle, 0.0);
  EXPECT_EQ(line.offset, 7.0);
}

TEST(LinearRegression, OfOnePointManyTimesIsHorizontalThroughIt) {
  const Line line = Fit({{3, 3, 3, 3}, {7, 7, 7, 7}});
  EXPECT_EQ(line.angle, 0.0);
  EXPECT_EQ(line.offset, 7.0);
}

TEST(LinearRegression, OfNothingIsZero) {
  for (const int n : {0, -1, std::numeric_limits<int>::min()}) {
    Line line;
    const double coordinate = 5;
    mvt_linear_regression(&coordinate, &coordinate, n, 0, &line.angle, &line.offset);
    EXPECT_EQ(line.angle, 0.0);
    EXPECT_EQ(line.offset, 0.0);
  }
}

TEST(LinearRegression, DoesNotChangeThePoints) {
  const Points before = {{1, 5, 9}, {2, 2, 7}};
  const Points points = before;
  Fit(points);
  EXPECT_EQ(points.x, before.x);
  EXPECT_EQ(points.y, before.y);
}

/// Sum of the squared distances from the line through the centroid.
double SquaredDistances(const Points& points, double angle) {
  double mean_x = 0;
  double mean_y = 0;
  const auto n = static_cast<std::size_t>(points.size());
  for (std::size_t i = 0; i < n; ++i) {
    mean_x += points.x[i] / static_cast<double>(n);
    mean_y += points.y[i] / static_cast<double>(n);
  }
  double sum = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const double distance =
        (points.y[i] - mean_y) * std::cos(angle) - (points.x[i] - mean_x) * std::sin(angle);
    sum += distance * distance;
  }
  return sum;
}

/// The best direction by trying: ever finer steps around the best so far.
double BestAngleByTrying(const Points& points) {
  double best = 0;
  for (double step = kPi / 100; step > 1e-9; step /= 10) {
    const double centre = best;
    for (int i = -60; i <= 60; ++i) {
      const double angle = centre + i * step;
      if (SquaredDistances(points, angle) < SquaredDistances(points, best)) best = angle;
    }
  }
  return best;
}

TEST(LinearRegression, LeavesTheLeastSquaresForNoisyPoints) {
  UniformRandom random(/*seed=*/11);
  for (int trial = 0; trial < 40; ++trial) {
    const double angle = random.Real(-kHalfPi, kHalfPi);
    Points points;
    for (int i = 0; i < 25; ++i) {
      const double along = random.Real(-50, 50);
      points.Add(200 + along * std::cos(angle) + random.Real(-2, 2),
                 100 + along * std::sin(angle) + random.Real(-2, 2));
    }
    // The sum of squares is flat at its least; trying cannot tell angles closer than this.
    EXPECT_NEAR(AngleBetween(Fit(points).angle, BestAngleByTrying(points)), 0, 1e-6);
  }
}

TEST(LinearRegression, GoesThroughTheCentroid) {
  UniformRandom random(/*seed=*/12);
  for (int trial = 0; trial < 40; ++trial) {
    Points points;
    double mean_x = 0;
    double mean_y = 0;
    for (int i = 0; i < 8; ++i) {
      points.Add(random.Real(0, 1000), random.Real(0, 1000));
      mean_x += points.x.back() / 8;
      mean_y += points.y.back() / 8;
    }
    EXPECT_NEAR(Distance(mean_x, mean_y, Fit(points)), 0, kTolerance);
  }
}

TEST(PointToLine, DistanceIsPositiveBelowAHorizontalLine) {
  EXPECT_EQ(Distance(3, 7, {0, 5}), 2);
  EXPECT_EQ(Distance(3, 1, {0, 5}), -4);
}

TEST(PointToLine, DistanceIsPositiveLeftOfAVerticalLine) {
  EXPECT_NEAR(Distance(1, 50, {kHalfPi, -4}), 3, kTolerance);
  EXPECT_NEAR(Distance(6, 50, {kHalfPi, -4}), -2, kTolerance);
}

TEST(PointToLine, DistanceIsMeasuredAtRightAngles) {
  for (double angle = -1.5; angle < 1.6; angle += 0.1) {
    const double x = 30 * std::cos(angle) - 2.5 * std::sin(angle);
    const double y = 30 * std::sin(angle) + 2.5 * std::cos(angle);
    EXPECT_NEAR(Distance(x, y, {angle, 0}), 2.5, kTolerance);
  }
}

TEST(Bisector, HalvesTheAngleAndMeetsTheCrossing) {
  // Lines in directions 0.2 and 0.6 through (10, 20).
  const Line first = {0.2, 20 * std::cos(0.2) - 10 * std::sin(0.2)};
  const Line second = {0.6, 20 * std::cos(0.6) - 10 * std::sin(0.6)};
  const Line line = Bisect(first, second);
  EXPECT_NEAR(line.angle, 0.4, kTolerance);
  EXPECT_NEAR(line.offset, 20 * std::cos(0.4) - 10 * std::sin(0.4), kTolerance);
}

TEST(Bisector, OfParallelLinesLiesHalfway) {
  const Line line = Bisect({0.3, 2}, {0.3, 7});
  EXPECT_NEAR(line.angle, 0.3, kTolerance);
  EXPECT_NEAR(line.offset, 4.5, kTolerance);
}

TEST(Bisector, TurnsTheSecondLineWhereTheDirectionsOppose) {
  const Line line = Bisect({0.3, 2}, {0.3 - kPi, -7});  // the same line, backwards
  EXPECT_NEAR(line.angle, 0.3, kTolerance);
  EXPECT_NEAR(line.offset, 4.5, kTolerance);
}

TEST(Bisector, TurnsTheSecondLineJustBeyondARightAngle) {
  const Line within = Bisect({0.2, 0}, {0.2 + kHalfPi - 0.01, 0});
  EXPECT_NEAR(within.angle, 0.2 + kPi / 4 - 0.005, kTolerance);
  const Line beyond = Bisect({0.2, 0}, {0.2 + kHalfPi + 0.01, 0});
  EXPECT_NEAR(beyond.angle, 0.2 - kPi / 4 + 0.005, kTolerance);
}

TEST(Bisector, BeyondARightAngleComesBackWithItsOffsetNegated) {
  const Line above = Bisect({1.5, 3}, {1.9, 5});
  EXPECT_NEAR(above.angle, 1.7 - kPi, kTolerance);
  EXPECT_NEAR(above.offset, -4 / std::cos(0.2), kTolerance);
  const Line below = Bisect({-1.5, 3}, {-1.9, 5});
  EXPECT_NEAR(below.angle, -1.7 + kPi, kTolerance);
  EXPECT_NEAR(below.offset, -4 / std::cos(0.2), kTolerance);
}

TEST(Bisector, OfTwoNearlyVerticalLinesIsVertical) {
  // Either side of vertical; their directions, normalised, differ by almost pi.
  const Line line = Bisect({kHalfPi - 0.1, -50}, {-kHalfPi + 0.1, 60});
  EXPECT_NEAR(AngleBetween(line.angle, kHalfPi), 0, kTolerance);
  EXPECT_NEAR(std::fabs(line.offset), 55 / std::cos(0.1), kTolerance);
  // Normalised its offset has the sign of the first line's, reversed the other.
  EXPECT_EQ(line.offset<0, line.angle> 0);
}

TEST(Bisector, OfAVerticalLineWithItselfIsARightAngle) {
  const Line line = Bisect({kHalfPi, -4}, {kHalfPi, -4});
  EXPECT_EQ(line.angle, kHalfPi);
  EXPECT_NEAR(line.offset, -4, kTolerance);
}

/// A point of the bisector has the same distance from both lines, with one sign or the other.
TEST(Bisector, IsAsFarFromOneLineAsFromTheOther) {
  UniformRandom random(/*seed=*/13);
  for (int trial = 0; trial < 500; ++trial) {
    const Line first = {random.Real(-kHalfPi, kHalfPi), random.Real(-500, 500)};
    const Line second = {random.Real(-kHalfPi, kHalfPi), random.Real(-500, 500)};
    const Line line = Bisect(first, second);
    EXPECT_TRUE(InRange(line.angle));
    for (const double along : {-300.0, 0.0, 250.0}) {
      const double x = along * std::cos(line.angle) - line.offset * std::sin(line.angle);
      const double y = along * std::sin(line.angle) + line.offset * std::cos(line.angle);
      EXPECT_NEAR(std::fabs(Distance(x, y, first)), std::fabs(Distance(x, y, second)), 1e-8);
    }
    EXPECT_LE(AngleBetween(line.angle, first.angle), kPi / 4 + kTolerance);
    EXPECT_LE(AngleBetween(line.angle, second.angle), kPi / 4 + kTolerance);
  }
}

TEST(Lines, NotANumberStaysNotANumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(std::isnan(Fit({{1, nan}, {2, 3}}).angle));
  EXPECT_TRUE(std::isnan(Bisect({nan, 0}, {0, 0}).angle));
  EXPECT_TRUE(std::isnan(Distance(nan, 0, {0, 0})));
}

TEST(Lines, NullArgumentsAreAllowed) {
  const double coordinate = 2;
  Line line;
  mvt_linear_regression(nullptr, &coordinate, 1, 0, &line.angle, &line.offset);
  EXPECT_EQ(line.angle, 0.0);
  EXPECT_EQ(line.offset, 0.0);
  line = {};
  mvt_linear_regression(&coordinate, nullptr, 1, 0, &line.angle, nullptr);
  EXPECT_EQ(line.angle, 0.0);
  mvt_linear_regression(&coordinate, &coordinate, 1, 0, nullptr, &line.offset);
  EXPECT_EQ(line.offset, 2.0);
  mvt_point2line_dist(1, 1, 0, 0, nullptr);
  mvt_line_bisect(0, 1, 0, 3, nullptr, &line.offset);
  EXPECT_EQ(line.offset, 2.0);
  mvt_line_bisect(0, 1, 0, 3, nullptr, nullptr);
}

}  // namespace
}  // namespace orvandel::test
