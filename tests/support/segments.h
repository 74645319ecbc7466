#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/line_segment.h"
#include "tests/support/same_bits.h"

namespace orvandel::test {

/// Every field of two segments, bit for bit.
inline void ExpectSameSegment(const CLineSegment& actual, const CLineSegment& expected) {
  EXPECT_TRUE(SameBits(actual.start_x, expected.start_x)) << "start_x";
  EXPECT_TRUE(SameBits(actual.start_y, expected.start_y)) << "start_y";
  EXPECT_TRUE(SameBits(actual.end_x, expected.end_x)) << "end_x";
  EXPECT_TRUE(SameBits(actual.end_y, expected.end_y)) << "end_y";
  EXPECT_TRUE(SameBits(actual.mid_x, expected.mid_x)) << "mid_x";
  EXPECT_TRUE(SameBits(actual.mid_y, expected.mid_y)) << "mid_y";
  EXPECT_TRUE(SameBits(actual.line_angle, expected.line_angle)) << "line_angle";
  EXPECT_TRUE(SameBits(actual.line_offset, expected.line_offset)) << "line_offset";
  EXPECT_TRUE(SameBits(actual.direction, expected.direction)) << "direction";
  EXPECT_TRUE(SameBits(actual.gradient_direction, expected.gradient_direction))
      << "gradient_direction";
  EXPECT_TRUE(SameBits(actual.spare, expected.spare)) << "spare";
  EXPECT_TRUE(SameBits(actual.length, expected.length)) << "length";
  EXPECT_EQ(actual.num_points, expected.num_points);
  EXPECT_TRUE(SameBits(actual.fit_error, expected.fit_error)) << "fit_error";
  EXPECT_EQ(actual.contour_index, expected.contour_index);
}

inline void ExpectSameSegments(const std::vector<CLineSegment>& actual,
                               const std::vector<CLineSegment>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    SCOPED_TRACE("segment " + std::to_string(i));
    ExpectSameSegment(actual[i], expected[i]);
  }
}

}  // namespace orvandel::test
