#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/files.h"

namespace orvandel::test {

inline Bytes Be32(std::uint32_t value) {
  return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
          static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

/// The checksum of a chunk, bit by bit.
inline std::uint32_t ChunkChecksum(const Bytes& bytes) {
  std::uint32_t rest = ~0U;
  for (const std::uint8_t byte : bytes) {
    for (int bit = 0; bit < 8; ++bit) {
      const bool carry = ((rest ^ (byte >> bit)) & 1U) != 0;
      rest = (rest >> 1) ^ (carry ? 0xedb88320U : 0U);
    }
  }
  return ~rest;
}

inline Bytes PngChunk(const std::string& type, const Bytes& data) {
  const Bytes checked = BytesOf(type) + data;
  return Be32(static_cast<std::uint32_t>(data.size())) + checked + Be32(ChunkChecksum(checked));
}

/// A compressed stream that stores its data as they are, in one block of less than 64 KiB.
inline Bytes StoredStream(const Bytes& data) {
  std::uint32_t sum = 1;
  std::uint32_t sum_of_sums = 0;
  for (const std::uint8_t byte : data) {
    sum = (sum + byte) % 65521;
    sum_of_sums = (sum_of_sums + sum) % 65521;
  }
  const auto low = static_cast<std::uint8_t>(data.size());
  const auto high = static_cast<std::uint8_t>(data.size() >> 8);
  return Bytes{0x78,
               0x01,
               0x01,
               low,
               high,
               static_cast<std::uint8_t>(~low),
               static_cast<std::uint8_t>(~high)} +
         data + Be32(sum_of_sums << 16 | sum);
}

/// A compressed stream of a zero byte and `num_runs` runs of 258 more.
inline Bytes StreamOfZeros(int num_runs) {
  std::string bits = "110";  // the last block, with the method's own codes; lowest bit first
  bits += "00110000";        // a zero
  for (int i = 0; i < num_runs; ++i)
    bits += "1100010100000";  // 258 bytes, from 1 byte back
  bits += "0000000";          // the end
  Bytes stream = {0x78, 0x01};
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (i % 8 == 0) stream.push_back(0);
    if (bits[i] == '1') stream.back() = static_cast<std::uint8_t>(stream.back() | 1 << i % 8);
  }
  const auto num_zeros = static_cast<std::uint32_t>(1 + 258 * num_runs);
  return stream + Be32(num_zeros % 65521 << 16 | 1);
}

/// The parts of a PNG file, to be changed by a test before they are put together.
struct Png {
  std::uint32_t width = 3;
  std::uint32_t height = 2;
  std::uint8_t bit_depth = 8;
  std::uint8_t colour_type = 0;  // 0 grey, 2 colour, 3 palette, 4 grey and alpha, 6 with alpha
  Bytes before_data;             // chunks
  std::vector<Bytes> rows = {{1, 2, 3}, {4, 5, 6}};
  Bytes after_data;

  Bytes Header() const {
    return PngChunk("IHDR", Be32(width) + Be32(height) + Bytes{bit_depth, colour_type, 0, 0, 0});
  }
  Bytes Packed() const {
    Bytes packed;
    for (const Bytes& row : rows)
      packed = std::move(packed) + Bytes{0} + row;  // 0: no filter
    return packed;
  }
  Bytes File() const {
    return Signature() + Header() + before_data + PngChunk("IDAT", StoredStream(Packed())) +
           after_data + PngChunk("IEND", {});
  }
  static Bytes Signature() { return {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'}; }
};

}  // namespace orvandel::test
