// What a search allocates with a workspace that has served the same scenes: nothing.

#include <gtest/gtest.h>

#include "tests/search/counted_allocations.h"
#include "tests/shape/rendered_scenes.h"

namespace orvandel::shape {
namespace {

using test::GreyImage;
using test::NumAllocations;
using test::SceneOf;

class SearchAllocation : public testing::Test {
 protected:
  const render::Part part_ = render::MetalBracket();
  const std::shared_ptr<const ShapeModel> model_ = test::Learnt(test::PatternOf(part_));
  const GreyImage noisy_ = SceneOf(part_, {322.2, 141.7, 131, 0.7}, {.noise_sigma = 10});
};

TEST_F(SearchAllocation, AFurtherSearchAllocatesNothing) {
  for (const int num_threads : {1, 3}) {
    for (const int max_matches : {1, 0}) {
      FindOptions options;
      options.num_threads = num_threads;
      options.max_matches = max_matches;
      Workspace workspace;
      // Which worker meets which pose is chance, so each one's buffers take some searches to grow.
      for (int warm_up = 0; warm_up < (num_threads == 1 ? 1 : 20); ++warm_up)
        FindShapes(*model_, noisy_.View(), options, workspace);
      const long before = NumAllocations();
      const FindResult result = FindShapes(*model_, noisy_.View(), options, workspace);
      EXPECT_EQ(NumAllocations() - before, 0) << num_threads << ' ' << max_matches;
      EXPECT_FALSE(result.matches.empty());
    }
  }
}

TEST_F(SearchAllocation, NorDoOneAfterTheOtherOfScenesThatWereServed) {
  const GreyImage several = test::ToGreyImage(render::RenderScene(
      {{part_, {150, 130, 20, 1.0}}, {part_, {480, 130, -100, 0.9}}, {part_, {320, 340, 160, 1.1}}},
      {.noise_sigma = 4}));
  const GreyImage reversed = SceneOf(part_, {300, 240, 55, 1.2}, {.ground = 200, .contrast = -1});
  const GreyImage without = SceneOf(render::Gear(), {320, 240, 10, 1.5}, {.noise_sigma = 6});
  const GreyImage empty(640, 480, 90);
  test::DeepImage deep(640, 480);
  for (std::size_t i = 0; i < deep.pixels.size(); ++i)
    deep.pixels[i] = static_cast<std::uint16_t>(several.pixels[i] * 100);
  const std::vector<ImageView> scenes = {several.View(), without.View(), empty.View(),
                                         deep.View(),    noisy_.View(),  reversed.View()};
  FindOptions options;
  options.max_matches = 0;
  Workspace workspace;
  std::vector<std::size_t> num_matches;
  for (const ImageView& scene : scenes)
    num_matches.push_back(FindShapes(*model_, scene, options, workspace).matches.size());
  EXPECT_EQ(num_matches, (std::vector<std::size_t>{3, 0, 0, 3, 1, 1}));
  for (std::size_t i = scenes.size(); i-- > 0;) {
    const long before = NumAllocations();
    const FindResult result = FindShapes(*model_, scenes[i], options, workspace);
    EXPECT_EQ(NumAllocations() - before, 0) << i;
    EXPECT_EQ(result.matches.size(), num_matches[i]);
  }
}

}  // namespace
}  // namespace orvandel::shape
