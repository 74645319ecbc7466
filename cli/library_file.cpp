#include "cli/library_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <fmt/format.h>

#include "cli/tool_error.h"
#include "evaluation/paths.h"

namespace orvandel::cli {

using evaluation::Utf8FromPath;

namespace {

namespace fs = std::filesystem;

// Removes the file when it goes out of scope.
class TemporaryFile {
 public:
  TemporaryFile()
      : folder_(fs::temp_directory_path()),
        name_(fmt::format("orvandel-{:08x}.tmp", std::random_device()())) {}
  ~TemporaryFile() {
    std::error_code ignored;
    fs::remove(Path(), ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const fs::path& Folder() const { return folder_; }
  const std::string& Name() const { return name_; }
  fs::path Path() const { return folder_ / name_; }

  std::string Read() const {
    std::ifstream file(Path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  fs::path folder_;
  std::string name_;
};

#if defined(_WIN32)
// Names go through the code page of the system, which lacks most letters; the user's name is part
// of the temporary folder's. From within the folder, the file's own name is enough.
int WriteTo(const TemporaryFile& file, const std::function<int(const char* path)>& write) {
  const fs::path folder_before = fs::current_path();
  fs::current_path(file.Folder());
  const int error = write(file.Name().c_str());
  fs::current_path(folder_before);
  return error;
}
#else
int WriteTo(const TemporaryFile& file, const std::function<int(const char* path)>& write) {
  return write(file.Path().c_str());
}
#endif

}  // namespace

std::string BytesWritten(const std::function<int(const char* path)>& write) {
  const TemporaryFile file;
  if (WriteTo(file, write) != 0)
    throw FileError(Utf8FromPath(file.Path()), "cannot be written; is the disk full?");
  return file.Read();
}

}  // namespace orvandel::cli
