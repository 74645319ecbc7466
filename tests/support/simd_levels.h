#pragma once

#include <string>

#include <gtest/gtest.h>

#include "platform/simd_level.h"

namespace orvandel::test {

/// Puts a level of vector instructions in force while it lives.
class ForcedSimdLevel {
 public:
  explicit ForcedSimdLevel(SimdLevel level) : before_(ActiveSimdLevel()) { ForceSimdLevel(level); }
  ForcedSimdLevel(const ForcedSimdLevel&) = delete;
  ForcedSimdLevel& operator=(const ForcedSimdLevel&) = delete;
  ~ForcedSimdLevel() { ForceSimdLevel(before_); }

 private:
  SimdLevel before_;
};

/// A test at each level that this processor runs.
class AtEverySimdLevel : public testing::TestWithParam<SimdLevel> {
 private:
  ForcedSimdLevel forced_{GetParam()};
};

inline std::string SimdLevelName(const testing::TestParamInfo<SimdLevel>& level) {
  std::string name;
  for (const char* c = NameOf(level.param); *c != '\0'; ++c) {
    if (*c != '-') name += *c;
  }
  return name;
}

#define ORVANDEL_AT_EVERY_SIMD_LEVEL(suite)                                             \
  INSTANTIATE_TEST_SUITE_P(Levels, suite,                                               \
                           testing::ValuesIn(::orvandel::SupportedSimdLevels().begin(), \
                                             ::orvandel::SupportedSimdLevels().end()),  \
                           ::orvandel::test::SimdLevelName)

}  // namespace orvandel::test
