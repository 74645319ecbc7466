#pragma once

#include <filesystem>
#include <string>

namespace orvandel::evaluation {

// Text on the command line, in reports and at the image library is UTF-8; only the file system
// takes what the platform wants. These are the only two places where one becomes the other.

std::filesystem::path PathFromUtf8(const std::string& text);
std::string Utf8FromPath(const std::filesystem::path& path);

}  // namespace orvandel::evaluation
