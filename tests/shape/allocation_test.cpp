// What a search allocates with a workspace that has served the same scene: nothing.

#include "tests/search/counted_allocations.h"
#include "tests/shape/rendered_scenes.h"

namespace orvandel::shape {
namespace {

TEST(SearchAllocation, AFurtherSearchAllocatesNothing) {
  const render::Part part = render::MetalBracket();
  const auto model = test::Learnt(test::PatternOf(part));
  ASSERT_TRUE(model);
  const test::GreyImage scene = test::SceneOf(part, {322.2, 141.7, 131, 0.7}, {.noise_sigma = 10});
  for (const int num_threads : {1, 3}) {
    for (const int max_matches : {1, 0}) {
      FindOptions options;
      options.num_threads = num_threads;
      options.max_matches = max_matches;
      Workspace workspace;
      // Which worker meets which pose is chance, so each one's buffers take some searches to grow.
      for (int warm_up = 0; warm_up < (num_threads == 1 ? 1 : 20); ++warm_up)
        FindShapes(*model, scene.View(), options, workspace);
      const long before = test::NumAllocations();
      const FindResult result = FindShapes(*model, scene.View(), options, workspace);
      EXPECT_EQ(test::NumAllocations() - before, 0) << num_threads << ' ' << max_matches;
      EXPECT_FALSE(result.matches.empty());
    }
  }
}

}  // namespace
}  // namespace orvandel::shape
