// Finding the few bytes of a row that are not 0.

#include "base/nonzero_bytes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

std::vector<std::size_t> Found(const std::vector<std::uint8_t>& bytes) {
  std::vector<std::size_t> found;
  ForEachNonzero(bytes.data(), bytes.size(), [&](std::size_t i) { found.push_back(i); });
  return found;
}

TEST(ForEachNonzero, FindsAByteOfAnyValueAtAnyPlace) {
  for (const std::size_t size : {1u, 63u, 64u, 65u, 200u}) {
    for (std::size_t place = 0; place < size; ++place) {
      for (int value = 1; value <= 255; ++value) {
        std::vector<std::uint8_t> bytes(size);
        bytes[place] = static_cast<std::uint8_t>(value);
        ASSERT_EQ(Found(bytes), std::vector<std::size_t>{place}) << "value " << value;
      }
    }
  }
}

TEST(ForEachNonzero, FindsThemInOrder) {
  UniformRandom random(1);
  for (int size = 0; size <= 300; ++size) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    std::vector<std::size_t> expected;
    const int one_in = random.Integer(1, 40);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      if (!random.OneIn(one_in)) continue;
      bytes[i] = static_cast<std::uint8_t>(random.Integer(1, 255));
      expected.push_back(i);
    }
    ASSERT_EQ(Found(bytes), expected) << size;
  }
}

}  // namespace
}  // namespace orvandel::test
