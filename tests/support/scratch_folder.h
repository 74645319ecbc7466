#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace orvandel::test {

/// A new, empty folder of its owner's alone, removed with everything in it.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("orvandel-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

  /// Where a file of that name lies in it, whether or not it is there.
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
  std::string File(const std::string& name) const { return (path_ / name).string(); }

  /// Names of what is in it.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(entry.path().filename().string());
    return names;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace orvandel::test
