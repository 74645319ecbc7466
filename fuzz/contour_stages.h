#pragma once

#include <string>

namespace orvandel::fuzz {

/// Reads a contour file with the checked reader. What is refused leaves the set as it was; what is
/// accepted is the set that the trusting reader gives, and goes through every stage that takes
/// contours.
void ReadAndUseContours(const std::string& path);

}  // namespace orvandel::fuzz
