#include "shape/refinement/rounding_runs.h"

#include <gtest/gtest.h>

namespace orvandel::shape::test {
namespace {

FloatImage Numbered(int width, int height) {
  FloatImage image;
  image.Resize(width, height);
  for (std::size_t i = 0; i < image.grey.size(); ++i)
    image.grey[i] = static_cast<float>(i);
  return image;
}

TEST(RoundingRuns, LeaveDifferentPixelsAlone) {
  const auto runs = FindRoundingRuns(Numbered(9, 7));
  for (std::size_t i = 0; i < runs.size(); ++i)
    EXPECT_EQ(runs[i], static_cast<int>(i));
}

TEST(RoundingRuns, JoinSixEqualPixelsOfAColumnButNotFive) {
  for (const int length : {5, 6}) {
    FloatImage image = Numbered(9, 10);
    for (int y = 2; y < 2 + length; ++y)
      image.Row(y)[4] = -1.0F;
    const auto runs = FindRoundingRuns(image);
    for (int y = 2; y < 2 + length; ++y)
      EXPECT_EQ(runs[static_cast<std::size_t>(9 * y + 4)], length == 6 ? 9 * 2 + 4 : 9 * y + 4);
    EXPECT_EQ(runs[9 * 1 + 4], 9 * 1 + 4);
  }
}

TEST(RoundingRuns, GoAlongTheLongerDirection) {
  FloatImage image = Numbered(12, 12);
  for (int k = 0; k < 8; ++k)
    image.Row(5)[2 + k] = -1.0F;  // eight in the row
  for (int k = 0; k < 6; ++k)
    image.Row(5 + k)[2] = -1.0F;  // six in the column, from the same pixel
  const auto runs = FindRoundingRuns(image);
  EXPECT_EQ(runs[12 * 5 + 9], 12 * 5 + 2);
  EXPECT_EQ(runs[12 * 10 + 2], 12 * 5 + 2);
  image.Row(4)[2] = -1.0F;  // seven in the column now, which begin a row further up
  const auto longer = FindRoundingRuns(image);
  EXPECT_EQ(longer[12 * 5 + 2], 12 * 5 + 2);
  EXPECT_EQ(longer[12 * 6 + 2], 12 * 4 + 2);
}

}  // namespace
}  // namespace orvandel::shape::test
