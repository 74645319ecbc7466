// The modern face when memory runs out: an error of its own, never "not found", and the next call works.

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/orvandel.hpp"
#include "tests/api/drawn_part.h"
#include "tests/memory/exhaustion.h"

namespace orvandel::test {
namespace {

constexpr int kWidth = 160;
constexpr int kHeight = 130;

class ApiExhaustion : public testing::Test {
 protected:
  ApiExhaustion() {
    draw_part_8(pattern_.data(), kPatternWidth, kPatternHeight, (kPatternWidth - 1) / 2.0,
                (kPatternHeight - 1) / 2.0, 0, 1);
    draw_part_8(scene_.data(), kWidth, kHeight, 80, 65, 0.5, 1);
  }

  ImageView PatternImage() const { return {pattern_.data(), kPatternWidth, kPatternHeight}; }
  ImageView Scene() const { return {scene_.data(), kWidth, kHeight}; }

  static FindOptions AtFixedScale() {
    FindOptions options;
    options.min_scale = options.max_scale = 1;
    return options;
  }

 private:
  std::vector<std::uint8_t> pattern_ =
      std::vector<std::uint8_t>(std::size_t{kPatternWidth} * kPatternHeight);
  std::vector<std::uint8_t> scene_ = std::vector<std::uint8_t>(std::size_t{kWidth} * kHeight);
};

TEST_F(ApiExhaustion, EdgesAreFoundOrMemoryIsShort) {
  const std::size_t num_points = Edges(Scene()).size();
  FailEachAllocation([&](Trial& trial) {
    orv_edges* edges = nullptr;
    int status = ORV_OK;
    trial.Fail([&] {
      status = orv_edges_create(&edges);
      if (status == ORV_OK) status = orv_edges_detect(edges, Scene().AsC(), nullptr);
    });
    EXPECT_EQ(status, trial.HasFailed() ? ORV_OUT_OF_MEMORY : ORV_OK);
    if (trial.HasFailed()) {
      EXPECT_EQ(orv_edges_count(edges), 0U);
      EXPECT_STREQ(orv_last_message(), "There is not enough memory.");
    }
    if (edges != nullptr) {
      EXPECT_EQ(orv_edges_detect(edges, Scene().AsC(), nullptr), ORV_OK);
      EXPECT_EQ(orv_edges_count(edges), num_points);
    }
    orv_edges_destroy(edges);
  });
}

TEST_F(ApiExhaustion, APatternIsLearntOrMemoryIsShort) {
  // What the library keeps for the whole process is there from now on.
  ASSERT_GT(Pattern::Learn(PatternImage()).NumEdgePoints(), 0);
  // Of thousands of allocations, fewer and fewer: each stage is met.
  for (long index = 0;; index += 1 + index / 8) {
    SCOPED_TRACE(index);
    const long before = NumLiveBlocks();
    orv_pattern* pattern = nullptr;
    int status = ORV_OK;
    bool has_failed = false;
    {
      const FailingAllocation failing(index, Failure::kForGood);
      status = orv_pattern_learn(PatternImage().AsC(), nullptr, &pattern);
      has_failed = FailingAllocation::HasHappened();
    }
    EXPECT_EQ(status, has_failed ? ORV_OUT_OF_MEMORY : ORV_OK);
    EXPECT_EQ(pattern == nullptr, has_failed);
    orv_pattern_destroy(pattern);
    ASSERT_EQ(NumLiveBlocks(), before);
    if (!has_failed || HasFailure()) break;
  }
}

TEST_F(ApiExhaustion, ASceneIsSearchedOrMemoryIsShort) {
  const Pattern pattern = Pattern::Learn(PatternImage());
  const Result expected = Find(pattern, Scene(), AtFixedScale());
  ASSERT_EQ(expected.size(), 1U);
  for (long index = 0;; index += 1 + index / 8) {
    SCOPED_TRACE(index);
    bool is_short = false;
    bool has_failed = false;
    Result result;
    {
      const FailingAllocation failing(index, Failure::kForGood);
      try {
        result = Find(pattern, Scene(), AtFixedScale());
      } catch (const std::bad_alloc&) {
        is_short = true;
      }
      has_failed = FailingAllocation::HasHappened();
    }
    EXPECT_EQ(is_short, has_failed);
    if (!has_failed) {
      ASSERT_EQ(result.size(), 1U);
      EXPECT_EQ(result[0].x, expected[0].x);
    }
    if (!has_failed || HasFailure()) break;
  }
}

}  // namespace
}  // namespace orvandel::test
