#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "fuzz/require.h"

namespace orvandel::fuzz {

using Bytes = std::vector<std::uint8_t>;

/// A folder of this process's own, removed at its end. scripts/fuzz puts it in memory.
class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    do {
      path_ =
          std::filesystem::temp_directory_path() / ("orvandel-fuzz-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline void WriteBytes(const std::string& path, std::span<const std::uint8_t> bytes) {
  std::filesystem::remove(path);
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  ORVANDEL_REQUIRE(file.flush());
}

inline Bytes ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace orvandel::fuzz
