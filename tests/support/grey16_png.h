#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orvandel::test {

inline std::string BigEndian32(std::uint32_t value) {
  return {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
          static_cast<char>(value >> 8), static_cast<char>(value)};
}

/// A chunk of a PNG file: length, type, data, checksum.
inline std::string ChunkOfPng(const std::string& type, const std::string& data) {
  std::uint32_t rest = ~0U;
  for (const char byte : type + data) {
    rest ^= static_cast<std::uint8_t>(byte);
    for (int bit = 0; bit < 8; ++bit)
      rest = (rest >> 1) ^ ((rest & 1U) != 0 ? 0xedb88320U : 0U);
  }
  return BigEndian32(static_cast<std::uint32_t>(data.size())) + type + data + BigEndian32(~rest);
}

/// A grey PNG file of 16 bits, stored without compression in one block: less than 64 KiB of pixels.
inline std::string Grey16Png(const std::vector<std::vector<int>>& rows) {
  std::string pixels;
  for (const std::vector<int>& row : rows) {
    pixels += '\0';  // no filter
    for (const int value : row)
      pixels += {static_cast<char>(value >> 8), static_cast<char>(value)};
  }
  std::uint32_t sum = 1;
  std::uint32_t sum_of_sums = 0;
  for (const char byte : pixels) {
    sum = (sum + static_cast<std::uint8_t>(byte)) % 65521;
    sum_of_sums = (sum_of_sums + sum) % 65521;
  }
  const auto size = static_cast<std::uint16_t>(pixels.size());
  const std::string stored = {'\x78',
                              '\x01',
                              '\x01',
                              static_cast<char>(size),
                              static_cast<char>(size >> 8),
                              static_cast<char>(~size),
                              static_cast<char>(~size >> 8)};
  const std::string header = BigEndian32(static_cast<std::uint32_t>(rows.front().size())) +
                             BigEndian32(static_cast<std::uint32_t>(rows.size())) +
                             std::string("\x10\0\0\0\0", 5);
  return "\x89PNG\r\n\x1a\n" + ChunkOfPng("IHDR", header) +
         ChunkOfPng("IDAT", stored + pixels + BigEndian32(sum_of_sums << 16 | sum)) +
         ChunkOfPng("IEND", "");
}

}  // namespace orvandel::test
