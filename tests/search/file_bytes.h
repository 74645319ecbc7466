#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace orvandel::test {

inline std::vector<char> BytesOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::string& path, const std::vector<char>& bytes) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace orvandel::test
