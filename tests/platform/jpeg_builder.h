#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/files.h"

namespace orvandel::test {

inline Bytes JpegSegment(std::uint8_t code, const Bytes& data) {
  const std::size_t length = data.size() + 2;
  return Bytes{0xff, code, static_cast<std::uint8_t>(length >> 8),
               static_cast<std::uint8_t>(length)} +
         data;
}

/// A JPEG file of one block of 8 by 8 pixels, every channel of one value, which has been worked out
/// by hand. The quantiser is 8 for all coefficients, so that the mean of a block counts in whole
/// grey values above 128. Codes for the mean's bit length: 0 for seven bits, 10 for none; for the
/// rest of the block: 0 for the end.
struct FlatJpeg {
  std::uint8_t precision = 8;
  int width = 8;
  int height = 8;
  int channels = 1;
  Bytes before_frame;  // segments
  bool has_scan = true;
  Bytes scan = Grey200();

  /// 72 above 128: code 0, 1001000, code 0, then ones to the end of the byte.
  static Bytes Grey200() { return {0x48, 0x7f}; }
  static Bytes Start() { return {0xff, 0xd8}; }
  static Bytes End() { return {0xff, 0xd9}; }
  static Bytes Quantisers() { return JpegSegment(0xdb, Bytes{0x00} + Bytes(64, 8)); }
  static Bytes Codes() {
    Bytes one_code(16);
    one_code[0] = 1;
    Bytes two_codes(16);
    two_codes[0] = two_codes[1] = 1;
    return JpegSegment(0xc4, Bytes{0x00} + two_codes + Bytes{7, 0}) +
           JpegSegment(0xc4, Bytes{0x10} + one_code + Bytes{0});
  }
  Bytes Frame() const {
    Bytes data = {precision,
                  static_cast<std::uint8_t>(height >> 8),
                  static_cast<std::uint8_t>(height),
                  static_cast<std::uint8_t>(width >> 8),
                  static_cast<std::uint8_t>(width),
                  static_cast<std::uint8_t>(channels)};
    for (int i = 1; i <= channels; ++i)
      data = std::move(data) + Bytes{static_cast<std::uint8_t>(i), 0x11, 0};
    return JpegSegment(0xc0, data);
  }
  Bytes Scan() const {
    Bytes data = {static_cast<std::uint8_t>(channels)};
    for (int i = 1; i <= channels; ++i)
      data = std::move(data) + Bytes{static_cast<std::uint8_t>(i), 0};
    return JpegSegment(0xda, data + Bytes{0, 63, 0}) + scan;
  }
  Bytes File() const {
    return Start() + before_frame + Quantisers() + Codes() + Frame() +
           (has_scan ? Scan() : Bytes()) + End();
  }
};

}  // namespace orvandel::test
