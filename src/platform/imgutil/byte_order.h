#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/imgutil/image_codec.h"

namespace orvandel {

// Numbers in files. The caller has checked that they lie inside the bytes.

inline std::uint16_t LittleEndian16(ByteView bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
}

inline std::uint32_t LittleEndian32(ByteView bytes, std::size_t at) {
  return LittleEndian16(bytes, at) | std::uint32_t{LittleEndian16(bytes, at + 2)} << 16;
}

inline std::uint16_t BigEndian16(ByteView bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] << 8 | bytes[at + 1]);
}

inline std::uint32_t BigEndian32(ByteView bytes, std::size_t at) {
  return std::uint32_t{BigEndian16(bytes, at)} << 16 | BigEndian16(bytes, at + 2);
}

inline void AppendLittleEndian16(Bytes& bytes, std::uint16_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

inline void AppendLittleEndian32(Bytes& bytes, std::uint32_t value) {
  AppendLittleEndian16(bytes, static_cast<std::uint16_t>(value));
  AppendLittleEndian16(bytes, static_cast<std::uint16_t>(value >> 16));
}

inline void AppendBigEndian32(Bytes& bytes, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

}  // namespace orvandel
