#pragma once

#include <filesystem>
#include <string>

namespace orvandel::cli::test {

/// A path that no other test and no other run of the tests uses.
std::filesystem::path OwnTempPath();

/// A folder of its own for the running test; removed with all that is in it.
class TempFolder {
 public:
  TempFolder() : path_(OwnTempPath()) { std::filesystem::create_directories(path_); }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace orvandel::cli::test
