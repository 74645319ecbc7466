#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvandel {

/// One bit for each of 64 bytes, the first byte's lowest: 1 where the byte is not 0.
inline std::uint64_t NonzeroBits(const std::uint8_t* block) {
  std::array<std::uint64_t, 8> words;
  std::memcpy(words.data(), block, sizeof(words));
  std::uint64_t any = 0;
  for (const std::uint64_t word : words)
    any |= word;
  if (any == 0) return 0;  // most blocks

  // The product moves the lowest bit of each byte into the highest byte, in order.
  constexpr std::uint64_t kGather =
      std::endian::native == std::endian::little ? 0x0102040810204080u : 0x8040201008040201u;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::uint64_t word = words[i];
    word |= word >> 4;
    word |= word >> 2;
    word |= word >> 1;
    bits |= (word & 0x0101010101010101u) * kGather >> 56 << (8 * i);
  }
  return bits;
}

/// Calls `visit` with the index of each byte that is not 0, in rising order. Costs little where few are.
template <typename Visitor>
void ForEachNonzero(const std::uint8_t* bytes, std::size_t count, Visitor visit) {
  constexpr std::size_t kWordBits = 64;
  for (std::size_t begin = 0; begin < count; begin += kWordBits) {
    std::uint64_t bits = 0;
    if (count - begin >= kWordBits) {
      bits = NonzeroBits(bytes + begin);
    } else {
      std::array<std::uint8_t, kWordBits> last{};
      std::memcpy(last.data(), bytes + begin, count - begin);
      bits = NonzeroBits(last.data());
    }
    for (; bits != 0; bits &= bits - 1)
      visit(begin + static_cast<std::size_t>(std::countr_zero(bits)));
  }
}

}  // namespace orvandel
