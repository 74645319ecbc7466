#include "cli/contour_listing.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <fmt/format.h>

#include "cli/paths.h"
#include "cli/tool_error.h"
#include "contours/ctd.h"

namespace orvandel::cli {
namespace {

// Removes the file when it goes out of scope.
class TemporaryFile {
 public:
  TemporaryFile()
      : path_(std::filesystem::temp_directory_path() /
              fmt::format("orvandel-{:08x}.txt", std::random_device()())) {}
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  std::string Path() const { return Utf8FromPath(path_); }

  std::string Read() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::filesystem::path path_;
};

// A head, a line per point, and two lines and an empty one per contour.
long NumLinesOfListing(void* contours) {
  return 1 + ctd_point_count(contours) + 3L * ctd_contour_count(contours);
}

}  // namespace

std::string ListContours(void* contours) {
  const TemporaryFile file;
  const int error = ctd_dump(contours, file.Path().c_str());
  std::string listing = file.Read();
  // The library does not tell of a full disk.
  const bool is_whole =
      std::count(listing.begin(), listing.end(), '\n') == NumLinesOfListing(contours);
  if (error != 0 || !is_whole) throw FileError(file.Path(), "cannot be written; is the disk full?");
  return listing;
}

}  // namespace orvandel::cli
