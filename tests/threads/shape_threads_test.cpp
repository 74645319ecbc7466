// Searches by several threads, and several searches at once.

#include <functional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "shape/edges/edge_detection.h"
#include "tests/shape/matches.h"
#include "tests/shape/rendered_scenes.h"

namespace orvandel::shape {
namespace {

using render::MetalBracket;
using render::Part;
using test::ExpectSameBits;
using test::GreyImage;
using test::Learnt;
using test::PatternOf;
using test::SceneOf;

/// Runs all at once.
void RunTogether(const std::vector<std::function<void()>>& tasks) {
  std::vector<std::thread> threads;
  threads.reserve(tasks.size());
  for (const auto& task : tasks)
    threads.emplace_back(task);
  for (std::thread& thread : threads)
    thread.join();
}

TEST(ShapeThreads, AnyNumberGivesTheSameBits) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  const GreyImage scene = SceneOf(part, {322.2, 141.7, 131, 0.7}, {.noise_sigma = 10});
  FindOptions options;
  options.min_score = 0.0;
  options.max_matches = 5;
  const auto first = test::FindIn(scene.View(), *model, options);
  ASSERT_FALSE(first.empty());
  Workspace workspace;
  for (const int num_threads : {2, 3, 8, 100, 1}) {
    options.num_threads = num_threads;
    const FindResult result = FindShapes(*model, scene.View(), options, workspace);
    ExpectSameBits({result.matches.begin(), result.matches.end()}, first);
  }
}

TEST(ShapeThreads, MayShareAPattern) {
  const Part part = MetalBracket();
  const auto model = Learnt(PatternOf(part));
  ASSERT_TRUE(model);
  std::vector<GreyImage> scenes;
  std::vector<std::vector<Match>> alone;
  for (const render::Pose& pose :
       std::vector<render::Pose>{{300, 200, 10, 1.0}, {330, 240, 100, 0.8}, {280, 260, -70, 1.2}}) {
    scenes.push_back(SceneOf(part, pose));
    alone.push_back(test::FindIn(scenes.back().View(), *model));
    ASSERT_EQ(alone.back().size(), 1U);
  }
  std::vector<std::vector<Match>> together(scenes.size());
  std::vector<std::function<void()>> tasks;
  for (std::size_t i = 0; i < scenes.size(); ++i) {
    tasks.emplace_back([&, i] {
      FindOptions options;
      options.num_threads = static_cast<int>(1 + i);  // some have a team of their own
      Workspace workspace;
      FindShapes(*model, scenes[(i + 1) % scenes.size()].View(), options, workspace);
      const FindResult result = FindShapes(*model, scenes[i].View(), options, workspace);
      together[i].assign(result.matches.begin(), result.matches.end());
    });
  }
  RunTogether(tasks);
  for (std::size_t i = 0; i < scenes.size(); ++i)
    ExpectSameBits(together[i], alone[i]);
}

TEST(ShapeThreads, MayLearnAndDetectEdgesAtOnce) {
  const Part part = MetalBracket();
  const GreyImage pattern = PatternOf(part);
  const GreyImage scene = SceneOf(part, {330, 240, 100, 0.8});
  std::vector<std::shared_ptr<const ShapeModel>> models(2);
  edges::EdgePoints points;
  RunTogether({[&] { models[0] = Learnt(pattern); }, [&] { models[1] = Learnt(pattern); },
               [&] {
                 edges::EdgeWorkspace workspace;
                 DetectEdgePoints(scene.View(), edges::kUsualLeastStrength, workspace, points);
               }});
  ASSERT_TRUE(models[0] && models[1]);
  EXPECT_FALSE(points.All().empty());
  const auto found = test::FindIn(scene.View(), *models[0]);
  EXPECT_EQ(found.size(), 1U);
  ExpectSameBits(found, test::FindIn(scene.View(), *models[1]));
}

}  // namespace
}  // namespace orvandel::shape
