#pragma once

#include <string>
#include <string_view>

namespace orvandel::cli {

/// Where a command prints its results: standard output, or a file that appears when it is whole.
class Report {
 public:
  /// @param path  of the file; empty for standard output.
  explicit Report(std::string path) : path_(std::move(path)) {}

  void Print(std::string_view text);

  /// Call it once, after the last text. Throws FileError when not everything could be written.
  void Finish();

 private:
  std::string path_;
  std::string text_;  // of a file
};

}  // namespace orvandel::cli
