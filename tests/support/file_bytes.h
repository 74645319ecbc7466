#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace orvandel::test {

// Whole files as they are, line ends and all. Paths are UTF-8.

inline std::filesystem::path PathOf(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

inline std::string Contents(const std::string& path) {
  std::ifstream file(PathOf(path), std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(PathOf(path), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// Values in the machine's byte order, one after the other.
template <typename... Values>
std::string Bytes(const Values&... values) {
  std::string bytes;
  (bytes.append(reinterpret_cast<const char*>(&values), sizeof values), ...);
  return bytes;
}

}  // namespace orvandel::test
