#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace orvandel::test {

// Whole files as they are, line ends and all. Paths are UTF-8.

inline std::string ReadTextFile(const std::string& path) {
  std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())),
                     std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteTextFile(const std::string& path, const std::string& text) {
  std::ofstream(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary)
      << text;
}

inline bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace orvandel::test
