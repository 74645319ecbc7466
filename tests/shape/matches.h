#pragma once

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "base/sweep.h"
#include "shape/find_shapes.h"
#include "tests/support/same_bits.h"

namespace orvandel::test {

/// The matches of one scene, searched with a workspace of its own.
inline std::vector<shape::Match> FindIn(const ImageView& scene, const shape::ShapeModel& model,
                                        const shape::FindOptions& options = {}) {
  shape::Workspace workspace;
  const shape::FindResult result = FindShapes(model, scene, options, workspace);
  EXPECT_EQ(result.status, shape::FindStatus::kOk);
  return {result.matches.begin(), result.matches.end()};
}

/// All that a match says.
inline std::vector<double> NumbersOf(const shape::Match& match) {
  const Similarity& pose = match.scene_from_pattern;
  std::vector<double> numbers = {pose.x,
                                 pose.y,
                                 pose.angle,
                                 pose.scale,
                                 match.score,
                                 match.coverage,
                                 match.clutter,
                                 match.fit_error,
                                 match.contrast,
                                 match.share_outside,
                                 match.is_reversed ? 1.0 : 0.0};
  numbers.insert(numbers.end(), match.covariance.begin(), match.covariance.end());
  return numbers;
}

inline void ExpectSameBits(const std::vector<shape::Match>& a, const std::vector<shape::Match>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    const std::vector<double> numbers = NumbersOf(a[i]);
    const std::vector<double> expected = NumbersOf(b[i]);
    for (std::size_t k = 0; k < numbers.size(); ++k)
      EXPECT_TRUE(SameBits(numbers[k], expected[k])) << "match " << i << ", number " << k;
  }
}

/// Square of the difference between a match's pose and another one, in units of the match's covariance. Where that is
/// right and the other pose is the truth, it is 4 in the mean.
///
/// @param arm  distance from the origin, pattern pixels, at which a change of angle or scale weighs as much as a shift.
inline double NormalizedSquare(const shape::Match& match, const Similarity& other, double arm) {
  const Similarity& pose = match.scene_from_pattern;
  const std::array<double, 4> unit = {1.0, 1.0, arm, arm};
  const std::array<double, 4> difference = {pose.x - other.x, pose.y - other.y,
                                            NormalizedAngle(pose.angle - other.angle),
                                            pose.scale - other.scale};
  SymmetricMatrix inverse;
  double scale[4];
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j)
      inverse.at[i][j] = match.covariance[4 * i + j] * unit[i] * unit[j];
    scale[i] = inverse.at[i][i];
  }
  EXPECT_EQ(InvertBySweeping(inverse, 4, scale), 4);
  double square = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j)
      square += difference[i] * unit[i] * inverse.at[i][j] * difference[j] * unit[j];
  }
  return square;
}

}  // namespace orvandel::test
