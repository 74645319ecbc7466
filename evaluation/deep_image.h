#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvandel::evaluation {

/// The values of a grey PNG of 16 bits, which the image library reduces to 8, row by row without
/// gaps. Call it for a file that the image library has read.
///
/// @return  nothing where the file does not hold such an image of that size.
std::vector<std::uint16_t> ReadGrey16(const std::string& path, int width, int height);

}  // namespace orvandel::evaluation
