#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvandel::test {

/// A folder of its own for a test, removed with everything in it.
class KnowledgeFolder {
 public:
  KnowledgeFolder() {
    std::random_device device;  // several test programs may run at once
    folder_ = std::filesystem::path(testing::TempDir()) /
              ("orvandel_knowledge_" + std::to_string(device()));
    std::filesystem::create_directories(folder_);
  }
  ~KnowledgeFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  KnowledgeFolder(const KnowledgeFolder&) = delete;
  KnowledgeFolder& operator=(const KnowledgeFolder&) = delete;

  std::string operator/(const std::string& name) const { return (folder_ / name).string(); }

  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_))
      names.push_back(entry.path().filename().string());
    return names;
  }

 private:
  std::filesystem::path folder_;
};

inline std::vector<char> BytesOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::string& path, const std::vector<char>& bytes) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace orvandel::test
