#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace orvandel::cli {

/// A PNG file of a colour image.
///
/// @param rgb  rows of red, green, blue bytes, back to back.
/// @return  the file's bytes. Throws std::bad_alloc when memory is short.
std::string EncodeRgbPng(std::span<const std::uint8_t> rgb, int width, int height);

}  // namespace orvandel::cli
