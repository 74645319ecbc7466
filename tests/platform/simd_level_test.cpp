#include "platform/simd_level.h"

#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/simd_levels.h"

namespace orvandel::test {
namespace {

TEST(SimdLevel, TheBaselineIsAlwaysSupportedAndLevelsRise) {
  const auto levels = SupportedSimdLevels();
  ASSERT_FALSE(levels.empty());
  EXPECT_EQ(levels.front(), SimdLevel::kBaseline);
  EXPECT_TRUE(std::is_sorted(levels.begin(), levels.end()));
}

TEST(SimdLevel, TheHighestSupportedOneIsInForce) {
  EXPECT_EQ(ActiveSimdLevel(), SupportedSimdLevels().back());
}

TEST(SimdLevel, EverySupportedOneCanBeForced) {
  for (const SimdLevel level : SupportedSimdLevels()) {
    const ForcedSimdLevel forced(level);
    EXPECT_EQ(ActiveSimdLevel(), level);
  }
  EXPECT_EQ(ActiveSimdLevel(), SupportedSimdLevels().back());
}

TEST(SimdLevel, OneThatIsNotSupportedIsIgnored) {
  const SimdLevel before = ActiveSimdLevel();
  ForceSimdLevel(SimdLevel::kAvx512);
  EXPECT_EQ(ActiveSimdLevel(), SupportedSimdLevels().back());
  ForceSimdLevel(before);
}

TEST(SimdLevel, EachHasANameOfItsOwn) {
  EXPECT_STREQ(NameOf(SimdLevel::kBaseline), "baseline");
  EXPECT_STREQ(NameOf(SimdLevel::kAvx2), "AVX2");
  EXPECT_STREQ(NameOf(SimdLevel::kAvx512), "AVX-512");
}

}  // namespace
}  // namespace orvandel::test
