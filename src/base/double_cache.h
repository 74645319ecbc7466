#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvandel {

/// Remembers what a function gave for numbers that keep coming back, by their bits. A number takes the
/// place of another that falls to the same entry.
template <typename Value, int kLogSize>
class DoubleCache {
 public:
  /// @param make  works out the value of a number that is not there.
  template <typename Make>
  const Value& Of(double number, const Make& make) {
    std::uint64_t bits;
    std::memcpy(&bits, &number, sizeof(bits));
    // The multiplier is 2^64 over the golden ratio, which spreads near keys apart.
    Entry& entry = entries_[bits * 0x9E3779B97F4A7C15u >> (64 - kLogSize)];
    if (!entry.used || entry.bits != bits) entry = {true, bits, make(number)};
    return entry.value;
  }

 private:
  struct Entry {
    bool used = false;
    std::uint64_t bits = 0;
    Value value{};
  };
  std::array<Entry, std::size_t{1} << kLogSize> entries_{};
};

}  // namespace orvandel
