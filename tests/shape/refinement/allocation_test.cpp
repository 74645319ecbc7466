// What a refinement allocates once its workspace has served one like it: nothing.

#include <gtest/gtest.h>

#include "tests/search/counted_allocations.h"
#include "tests/shape/refinement/bracket_scene.h"

namespace orvandel::shape::test {
namespace {

using orvandel::test::NumAllocations;

using RefinementAllocation = BracketScene;

TEST_F(RefinementAllocation, IsNothingTheSecondTime) {
  Exposure moved = Expose(part_, kPose, kSize);
  for (std::size_t i = 0; i + 5 < moved.grey.size(); ++i) {
    double sum = 0.0;
    for (std::size_t k = 0; k < 5; ++k)
      sum += moved.grey[i + k];
    moved.grey[i] = sum / 5.0;  // blur along x brings the kernel of a line in
  }
  const RenderedImage sharp = TakeImage(part_, kPose, kSize);
  const RenderedImage blurred = Develop(moved, 0.6, 3);
  const Similarity start = Near(TruthOf(kPose), 0.5, 0.003, 0.003, random_);
  for (const RefinementOptions& options :
       {RefinementOptions{}, RefinementOptions{.start_error_px = 4.0}}) {
    for (const RenderedImage* const scene : {&sharp, &blurred}) {
      RefinePose(model_, scene->View(), start, options, workspace_);
      const long before = NumAllocations();
      RefinePose(model_, scene->View(), start, options, workspace_);
      EXPECT_EQ(NumAllocations() - before, 0);
    }
  }
}

}  // namespace
}  // namespace orvandel::shape::test
