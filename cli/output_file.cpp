#include "cli/output_file.h"

#include <filesystem>
#include <span>
#include <system_error>

#include <fmt/format.h>

#include "cli/tool_error.h"
#include "evaluation/paths.h"
#include "platform/atomic_file.h"

namespace orvandel::cli {

using evaluation::PathFromUtf8;
using evaluation::Utf8FromPath;

namespace {

std::string ReasonNotWritten(const std::filesystem::path& path, const std::string& otherwise) {
  std::error_code ignored;
  const std::filesystem::path folder = path.parent_path();
  if (!folder.empty() && !std::filesystem::is_directory(folder, ignored))
    return fmt::format("cannot be written: there is no folder {}", Utf8FromPath(folder));
  if (std::filesystem::is_directory(path, ignored)) return "cannot be written: this is a folder";
  return "cannot be written: " + otherwise;
}

void Check(std::error_code error, const std::string& path) {
  if (error) throw FileError(path, ReasonNotWritten(PathFromUtf8(path), error.message()));
}

}  // namespace

void WriteFile(const std::string& path, std::string_view bytes) {
  Check(WriteFileAtomically(PathFromUtf8(path), std::as_bytes(std::span(bytes))), path);
}

void MakeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(PathFromUtf8(path), error);
  if (error) throw FileError(path, "this folder cannot be made: " + error.message());
}

void ThrowNotWritten(const std::string& path) {
  throw FileError(path, ReasonNotWritten(PathFromUtf8(path), "is the disk full, or read-only?"));
}

}  // namespace orvandel::cli
