#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

namespace orvandel::test {

using Bytes = std::vector<std::uint8_t>;

inline std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

/// Writes a new file: some file systems take their time over one that is cut and written again.
inline void WriteBytes(const std::filesystem::path& path, const Bytes& bytes) {
  std::filesystem::remove(path);
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

inline Bytes ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline Bytes BytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

}  // namespace orvandel::test
