#include "base/sweep.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

/// A A' for a random square A: positive definite.
SymmetricMatrix RandomDefinite(UniformRandom& random, int n) {
  double factor[kMaxUnknowns][kMaxUnknowns];
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      factor[i][j] = random.Real(-1, 1);
    factor[i][i] += 2.0;
  }
  SymmetricMatrix matrix;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      for (int k = 0; k < n; ++k)
        matrix.at[i][j] += factor[i][k] * factor[j][k];
    }
  }
  return matrix;
}

int Invert(SymmetricMatrix& matrix, int n) {
  double scale[kMaxUnknowns];
  for (int i = 0; i < n; ++i)
    scale[i] = matrix.at[i][i];
  return InvertBySweeping(matrix, n, scale);
}

TEST(InvertBySweeping, TimesTheMatrixIsOne) {
  UniformRandom random(3);
  for (int n = 1; n <= kMaxUnknowns; ++n) {
    const SymmetricMatrix matrix = RandomDefinite(random, n);
    SymmetricMatrix inverse = matrix;
    ASSERT_EQ(Invert(inverse, n), n);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        double product = 0.0;
        for (int k = 0; k < n; ++k)
          product += matrix.at[i][k] * inverse.at[k][j];
        EXPECT_NEAR(product, i == j ? 1.0 : 0.0, 1e-11) << n;  // condition below 1e4
      }
    }
  }
}

TEST(InvertBySweeping, HoldsAnUnknownThatTheOthersReplace) {
  // The third unknown is the sum of the first two, so it says nothing new.
  SymmetricMatrix matrix;
  const double rows[3][3] = {{2, 0, 2}, {0, 3, 3}, {2, 3, 5}};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j)
      matrix.at[i][j] = rows[i][j];
  }
  EXPECT_EQ(Invert(matrix, 3), 2);
  EXPECT_DOUBLE_EQ(matrix.at[0][0], 0.5);
  EXPECT_DOUBLE_EQ(matrix.at[1][1], 1.0 / 3.0);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(matrix.at[i][2], 0.0);
    EXPECT_EQ(matrix.at[2][i], 0.0);
  }
}

TEST(InvertBySweeping, HoldsEverythingOfAnEmptyMatrix) {
  SymmetricMatrix matrix;
  EXPECT_EQ(Invert(matrix, 4), 0);
  EXPECT_EQ(matrix.at[0][0], 0.0);
}

TEST(InvertBySweeping, HoldsWhatIsNotANumber) {
  SymmetricMatrix matrix;
  matrix.at[0][0] = std::numeric_limits<double>::quiet_NaN();
  matrix.at[1][1] = 4.0;
  EXPECT_EQ(Invert(matrix, 2), 1);
  EXPECT_EQ(matrix.at[0][0], 0.0);
  EXPECT_EQ(matrix.at[1][1], 0.25);
}

}  // namespace
}  // namespace orvandel::test
