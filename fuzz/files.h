#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "fuzz/require.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Of a target, for the whole run. scripts/fuzz puts it in memory.
using test::ScratchFolder;

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
