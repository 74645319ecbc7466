// The same search gives the same bits: again, in a fresh object, and on two threads at once.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "orvandel/classic/sub_canny.h"
#include "platform/tick_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

/// Time stands still; several threads may read it.
class StillCounter : public TickCounter {
 public:
  StillCounter() { ReplaceProcessTickCounter(this); }
  ~StillCounter() override { ReplaceProcessTickCounter(nullptr); }
  std::uint64_t Read() override { return 0; }
  std::uint64_t TicksPerSecond() override { return 1000000; }
};

std::vector<ImagePtr> Scenes(std::uint32_t seed, int count) {
  UniformRandom random(seed);
  std::vector<ImagePtr> scenes;
  for (int i = 0; i < count; ++i)
    scenes.push_back(RandomScene(random, SmallPart()));
  return scenes;
}

/// Trains an object of its own and searches every scene.
std::vector<Found> SearchAll(const ImagePtr& pattern, const std::vector<ImagePtr>& scenes) {
  TrainedSearch search(pattern);
  std::vector<Found> results;
  for (const ImagePtr& scene : scenes)
    results.push_back(LookFor(search, scene));
  return results;
}

void ExpectSameResults(const std::vector<Found>& actual, const std::vector<Found>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i)
    ExpectSameResult(actual[i], expected[i]);
}

TEST(Repeatability, SecondSearchOfASceneGivesTheSameBits) {
  const StillCounter no_hurry;
  TrainedSearch search(ImageOf(SmallPart()));
  for (const ImagePtr& scene : Scenes(/*seed=*/5, 6))
    ExpectSameResult(LookFor(search, scene), LookFor(search, scene));
}

TEST(Repeatability, ScenesSearchedBeforeLeaveNoTrace) {
  const StillCounter no_hurry;
  const ImagePtr pattern = ImageOf(SmallPart());
  const std::vector<ImagePtr> scenes = Scenes(/*seed=*/6, 6);
  const std::vector<Found> in_turn = SearchAll(pattern, scenes);
  for (std::size_t i = 0; i < scenes.size(); ++i) {
    TrainedSearch fresh(pattern);
    ExpectSameResult(LookFor(fresh, scenes[i]), in_turn[i]);
  }
}

TEST(Repeatability, TrainingAgainGivesTheSameBits) {
  const StillCounter no_hurry;
  const ImagePtr pattern = ImageOf(SmallPart());
  const std::vector<ImagePtr> scenes = Scenes(/*seed=*/7, 3);
  TrainedSearch search(ImageOf(Triangle()));
  ASSERT_EQ(TrainOn(search, pattern), 0);
  const std::vector<Found> expected = SearchAll(pattern, scenes);
  for (std::size_t i = 0; i < scenes.size(); ++i)
    ExpectSameResult(LookFor(search, scenes[i]), expected[i]);
}

TEST(Repeatability, TwoThreadsWithObjectsOfTheirOwnGiveTheBitsOfOne) {
  const StillCounter no_hurry;
  const ImagePtr pattern = ImageOf(SmallPart());
  const ImagePtr other_pattern = ImageOf(Triangle());
  const std::vector<ImagePtr> scenes = Scenes(/*seed=*/8, 8);
  const std::vector<Found> expected = SearchAll(pattern, scenes);
  const std::vector<Found> other_expected = SearchAll(other_pattern, scenes);
  std::vector<Found> results;
  std::vector<Found> other_results;
  std::thread thread([&] { results = SearchAll(pattern, scenes); });
  std::thread other([&] { other_results = SearchAll(other_pattern, scenes); });
  thread.join();
  other.join();
  ExpectSameResults(results, expected);
  ExpectSameResults(other_results, other_expected);
}

TEST(Repeatability, ThreadsThatRaceForTheFirstUseGiveTheBitsOfOne) {
  const StillCounter no_hurry;
  const ImagePtr pattern = ImageOf(SmallPart());
  const std::vector<ImagePtr> scenes = Scenes(/*seed=*/9, 4);
  const std::vector<Found> expected = SearchAll(pattern, scenes);

  for (int round = 0; round < 5; ++round) {
    DeleteSubCannyTable();
    constexpr int kThreads = 6;
    std::atomic<int> waiting{kThreads};
    std::vector<std::vector<Found>> results(kThreads);
    std::vector<std::thread> threads;
    for (std::vector<Found>& result : results) {
      threads.emplace_back([&] {
        --waiting;
        while (waiting > 0)
          std::this_thread::yield();
        result = SearchAll(pattern, scenes);
      });
    }
    for (std::thread& thread : threads)
      thread.join();
    for (const std::vector<Found>& result : results)
      ExpectSameResults(result, expected);
  }
}

}  // namespace
}  // namespace orvandel::test
