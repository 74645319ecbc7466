#include "shape/search/pose_solver.h"

#include <gtest/gtest.h>

#include "tests/support/uniform_random.h"

namespace orvandel::shape {
namespace {

TEST(PoseSolver, SolvesWhatItWasMadeFrom) {
  test::UniformRandom random(4);
  for (int round = 0; round < 100; ++round) {
    // A sum of squares is positive definite; the solution is chosen, the right side follows.
    PoseMatrix matrix = {};
    for (int k = 0; k < 8; ++k) {
      PoseVector row;
      for (double& value : row)
        value = random.Real(-1, 1);
      for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j)
          matrix[i][j] += row[i] * row[j];
      }
    }
    PoseVector solution;
    for (double& value : solution)
      value = random.Real(-2, 2);
    PoseVector right = {};
    for (std::size_t i = 0; i < 4; ++i) {
      for (std::size_t j = 0; j < 4; ++j)
        right[i] += matrix[i][j] * solution[j];
    }
    const PoseVector solved = Solved(matrix, right);
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_NEAR(solved[i], solution[i], 1e-9);  // eight rows keep the condition below 1e5 or so
  }
}

TEST(PoseSolver, LeavesWhatIsNotDeterminedAtNothing) {
  PoseMatrix matrix = {};
  matrix[0][0] = 2.0;
  matrix[2][2] = 4.0;
  const PoseVector solved = Solved(matrix, {6.0, 1.0, 8.0, 1.0});
  EXPECT_EQ(solved, (PoseVector{3.0, 0.0, 2.0, 0.0}));
}

}  // namespace
}  // namespace orvandel::shape
