#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace orvandel::fuzz {

/// Reads the bytes as an image file with this extension, through the published calls. A file that
/// is refused leaves the image as it was; one that is read gives every pixel, and the same again.
void ReadAsImageFile(const std::uint8_t* data, std::size_t size, const std::string& extension);

}  // namespace orvandel::fuzz
