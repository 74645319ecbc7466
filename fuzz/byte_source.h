#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>

namespace orvandel::fuzz {

/// Takes an input apart from its beginning. What lies beyond its end is 0, so every input has a
/// meaning, and small changes of it are small changes of what it means.
class ByteSource {
 public:
  ByteSource(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  bool IsEmpty() const { return bytes_.empty(); }
  std::span<const std::uint8_t> Rest() const { return bytes_; }

  int Byte() {
    if (bytes_.empty()) return 0;
    const int byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }
  int SignedByte() { return static_cast<std::int8_t>(Byte()); }

  /// From `least` to `most`, which lie less than 65536 apart.
  int InRange(int least, int most) {
    const int high = Byte();
    return least + (high * 256 + Byte()) % (most - least + 1);
  }

  std::int32_t Int32() {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
      value = value << 8 | static_cast<std::uint32_t>(Byte());
    return static_cast<std::int32_t>(value);
  }

  /// Any 64 bits, or one of the values that arithmetic stumbles over.
  double Double() {
    using Limits = std::numeric_limits<double>;
    constexpr double kSpecial[] = {0.0,
                                   -0.0,
                                   1.0,
                                   -1.0,
                                   0.5,
                                   2.0,
                                   1e-320,
                                   1e300,
                                   -1e300,
                                   1e6,
                                   -1e6,
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   Limits::quiet_NaN()};
    constexpr int kNumSpecial = sizeof kSpecial / sizeof kSpecial[0];
    const int kind = Byte();
    if (kind < kNumSpecial) return kSpecial[kind];
    if (kind < 128) return SignedByte() / 16.0;
    std::uint8_t bytes[sizeof(double)];
    for (std::uint8_t& byte : bytes)
      byte = static_cast<std::uint8_t>(Byte());
    double value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace orvandel::fuzz
