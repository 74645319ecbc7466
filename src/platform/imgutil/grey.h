#pragma once

#include <cstddef>
#include <cstdint>

namespace orvandel {

/// 0.299 R + 0.587 G + 0.114 B, rounded, half upwards. In thousandths, so that it is exact; equal
/// channels give their common value.
constexpr std::uint8_t GreyOf(int red, int green, int blue) {
  return static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

/// Converts interleaved 8-bit samples: 1 grey, 2 grey and alpha, 3 red, green and blue, 4 these and
/// alpha. Alpha is passed over.
inline void ToGrey(const std::uint8_t* samples, int channels, std::size_t num_pixels,
                   std::uint8_t* grey) {
  const bool in_colour = channels >= 3;
  for (std::size_t i = 0; i < num_pixels; ++i) {
    grey[i] = in_colour ? GreyOf(samples[0], samples[1], samples[2]) : samples[0];
    samples += channels;
  }
}

}  // namespace orvandel
