// The modern face when memory runs out: an error of its own, never "not found", nothing lost, and the same handle gives
// the same bits afterwards.

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/orvandel.hpp"
#include "tests/api/drawn_part.h"
#include "tests/memory/exhaustion.h"
#include "tests/support/host_matches.h"

namespace orvandel::test {
namespace {

/// The part on a ground of its own.
class PartImage {
 public:
  PartImage(int width, int height, double x, double y, double angle, double scale)
      : pixels_(static_cast<std::size_t>(width * height)) {
    draw_part_8(pixels_.data(), width, height, x, y, angle, scale);
    orv_image_init(&image_, pixels_.data(), width, height, 8);
  }
  const orv_image* AsC() const { return &image_; }

 private:
  std::vector<std::uint8_t> pixels_;
  orv_image image_;
};

class ApiExhaustion : public testing::Test {
 protected:
  /// Small ones, because the calls are many: the part at two fifths of the size that it is drawn at.
  const PartImage pattern_image_{44, 40, 21.5, 19.5, 0, 0.4};
  const PartImage scene_{56, 48, 28.3, 24.6, 0.5, 0.4};
  const PartImage larger_scene_{90, 80, 44.2, 39.7, -1.2, 0.5};

  static orv_learn_options LearnOptions() {
    orv_learn_options options;
    orv_learn_options_init(&options, sizeof options);
    options.learns_chance = 0;
    return options;
  }

  detail::Owned<orv_pattern> Learnt() const {
    const orv_learn_options options = LearnOptions();
    orv_pattern* pattern = nullptr;
    EXPECT_EQ(orv_pattern_learn(pattern_image_.AsC(), &options, &pattern), ORV_OK);
    return detail::Owned<orv_pattern>(pattern);
  }

  static detail::Owned<orv_finder> NewFinder() {
    orv_finder* finder = nullptr;
    EXPECT_EQ(orv_finder_create(&finder), ORV_OK);
    return detail::Owned<orv_finder>(finder);
  }

  /// Several scales and matches, so that all of the search takes part.
  static orv_find_options FindOptions(int num_threads) {
    orv_find_options options;
    orv_find_options_init(&options, sizeof options);
    options.min_scale = 0.8;
    options.max_scale = 1.6;
    options.min_score = 0.5;
    options.max_matches = 2;
    options.num_threads = num_threads;
    return options;
  }

  static std::vector<orv_match> FoundIn(orv_finder* finder, const orv_pattern* pattern,
                                        const PartImage& scene, int num_threads = 1) {
    const orv_find_options options = FindOptions(num_threads);
    EXPECT_EQ(orv_finder_find(finder, pattern, scene.AsC(), &options), ORV_OK);
    return HostMatchesOf(finder);
  }

  static void ExpectOutOfMemory(int status) {
    EXPECT_EQ(status, ORV_OUT_OF_MEMORY);
    EXPECT_STREQ(orv_last_message(), "There is not enough memory.");
  }

  /// Lets the search of a scene fail with a finder that is new, or used for a smaller one.
  void FailSearches(int num_threads, bool is_used) {
    const detail::Owned<orv_pattern> pattern = Learnt();
    const orv_find_options options = FindOptions(num_threads);
    const std::vector<orv_match> expected =
        FoundIn(NewFinder().get(), pattern.get(), larger_scene_);
    const std::vector<orv_match> expected_before =
        FoundIn(NewFinder().get(), pattern.get(), scene_);
    ASSERT_FALSE(expected.empty());
    int num_trials = 0;
    FailEachAllocation(
        [&](Trial& trial) {
          const detail::Owned<orv_finder> finder = NewFinder();
          if (is_used) FoundIn(finder.get(), pattern.get(), scene_, num_threads);
          int status = ORV_OK;
          trial.Fail([&] {
            status = orv_finder_find(finder.get(), pattern.get(), larger_scene_.AsC(), &options);
          });
          if (trial.HasFailed()) {
            ExpectOutOfMemory(status);
            orv_result result;
            result.struct_size = sizeof result;
            EXPECT_EQ(orv_finder_get_result(finder.get(), &result), ORV_INVALID_ARGUMENT);
          } else {
            EXPECT_EQ(status, ORV_OK);
            EXPECT_TRUE(AreSameMatches(HostMatchesOf(finder.get()), expected));
          }
          // One scene or the other, as both would take twice the time.
          const bool is_larger = ++num_trials % 2 == 0;
          const PartImage& scene = is_larger ? larger_scene_ : scene_;
          EXPECT_TRUE(AreSameMatches(FoundIn(finder.get(), pattern.get(), scene, num_threads),
                                     is_larger ? expected : expected_before));
        },
        kManyAllocations);
  }
};

std::vector<orv_edge_point> PointsOf(const orv_edges* edges) {
  const orv_edge_point* const first = orv_edges_points(edges);
  return {first, first + orv_edges_count(edges)};
}

bool AreSamePoints(const std::vector<orv_edge_point>& a, const std::vector<orv_edge_point>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

std::vector<orv_edge_point> EdgesOf(const PartImage& image) {
  orv_edges* edges = nullptr;
  EXPECT_EQ(orv_edges_create(&edges), ORV_OK);
  EXPECT_EQ(orv_edges_detect(edges, image.AsC(), nullptr), ORV_OK);
  const std::vector<orv_edge_point> points = PointsOf(edges);
  orv_edges_destroy(edges);
  return points;
}

TEST_F(ApiExhaustion, EdgesAreFoundOrMemoryIsShort) {
  const std::vector<orv_edge_point> expected_before = EdgesOf(scene_);
  const std::vector<orv_edge_point> expected = EdgesOf(larger_scene_);
  ASSERT_GT(expected.size(), expected_before.size());
  for (const bool is_used : {false, true}) {
    FailEachAllocation([&](Trial& trial) {
      orv_edges* created = nullptr;
      int status = ORV_OK;
      if (is_used) {
        ASSERT_EQ(orv_edges_create(&created), ORV_OK);
        ASSERT_EQ(orv_edges_detect(created, scene_.AsC(), nullptr), ORV_OK);
      }
      trial.Fail([&] {
        if (created == nullptr) status = orv_edges_create(&created);
        if (status == ORV_OK) status = orv_edges_detect(created, larger_scene_.AsC(), nullptr);
      });
      const detail::Owned<orv_edges> edges(created);
      if (trial.HasFailed()) {
        ExpectOutOfMemory(status);
        EXPECT_EQ(orv_edges_count(edges.get()), 0U);
      } else {
        EXPECT_EQ(status, ORV_OK);
      }
      if (edges == nullptr) return;
      for (const auto& [image, points] :
           {std::pair{&scene_, &expected_before}, {&larger_scene_, &expected}}) {
        EXPECT_EQ(orv_edges_detect(edges.get(), image->AsC(), nullptr), ORV_OK);
        EXPECT_TRUE(AreSamePoints(PointsOf(edges.get()), *points));
      }
    });
  }
}

TEST_F(ApiExhaustion, AFinderIsMadeOrMemoryIsShort) {
  FailEachAllocation([](Trial& trial) {
    orv_finder* finder = nullptr;
    int status = ORV_OK;
    trial.Fail([&] { status = orv_finder_create(&finder); });
    EXPECT_EQ(status, trial.HasFailed() ? ORV_OUT_OF_MEMORY : ORV_OK);
    EXPECT_EQ(finder == nullptr, trial.HasFailed());
    orv_finder_destroy(finder);
  });
}

TEST_F(ApiExhaustion, APatternIsLearntOrMemoryIsShort) {
  const std::vector<orv_match> expected = FoundIn(NewFinder().get(), Learnt().get(), scene_);
  ASSERT_FALSE(expected.empty());
  const orv_learn_options options = LearnOptions();
  int num_trials = 0;
  int num_short = 0;
  FailEachAllocation(
      [&](Trial& trial) {
        orv_pattern* learnt = nullptr;
        int status = ORV_OK;
        trial.Fail([&] { status = orv_pattern_learn(pattern_image_.AsC(), &options, &learnt); });
        const detail::Owned<orv_pattern> pattern(learnt);
        // Sorting asks for memory and goes on more slowly without: then the pattern is the same.
        if (status == ORV_OK) {
          EXPECT_TRUE(AreSameMatches(FoundIn(NewFinder().get(), pattern.get(), scene_), expected));
        } else {
          EXPECT_TRUE(trial.HasFailed());
          ExpectOutOfMemory(status);
          EXPECT_EQ(pattern, nullptr);
          ++num_short;
        }
        ++num_trials;
      },
      kManyAllocations);
  EXPECT_GT(num_short, 0.9 * num_trials);
}

TEST_F(ApiExhaustion, ChanceIsLearntOrMemoryIsShort) {
  // What the library keeps for the whole process is there from now on.
  orv_pattern* pattern = nullptr;
  ASSERT_EQ(orv_pattern_learn(pattern_image_.AsC(), nullptr, &pattern), ORV_OK);
  orv_pattern_destroy(pattern);
  // The searches for chance allocate as those of the other tests do, and take long: of their allocations fewer and
  // fewer, so that each stage is met.
  for (long index = 0;; index += 1 + index / (kManyAllocations == 1 ? 4 : 1)) {
    SCOPED_TRACE(index);
    const long before = NumLiveBlocks();
    Trial trial(index, Failure::kForGood);
    int status = ORV_OK;
    trial.Fail([&] { status = orv_pattern_learn(pattern_image_.AsC(), nullptr, &pattern); });
    EXPECT_EQ(status, trial.HasFailed() ? ORV_OUT_OF_MEMORY : ORV_OK);
    EXPECT_EQ(pattern == nullptr, trial.HasFailed());
    orv_pattern_destroy(pattern);
    ASSERT_EQ(NumLiveBlocks(), before);
    if (!trial.HasFailed() || HasFailure()) break;
  }
}

TEST_F(ApiExhaustion, ASceneIsSearchedOrMemoryIsShort) {
  FailSearches(1, false);
}

TEST_F(ApiExhaustion, ALargerSceneIsSearchedOrMemoryIsShort) {
  FailSearches(1, true);
}

TEST_F(ApiExhaustion, ASceneIsSearchedBySeveralThreadsOrMemoryIsShort) {
  FailSearches(2, false);
}

}  // namespace
}  // namespace orvandel::test
