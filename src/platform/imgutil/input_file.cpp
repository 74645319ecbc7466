#include "platform/imgutil/input_file.h"

#include <algorithm>
#include <limits>
#include <new>
#include <system_error>

namespace orvandel {

namespace fs = std::filesystem;

InputFile::InputFile(const fs::path& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return;
  size_ = fs::file_size(path, error);
  if (!error) stream_.open(path, std::ios::binary);
}

ImageFileError InputFile::ReadBeginning(std::uint64_t count, Bytes& bytes) {
  count = std::min(count, size_);
  if (count > static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()))
    throw std::bad_alloc();
  bytes.resize(static_cast<std::size_t>(count));
  stream_.clear();
  stream_.seekg(0);
  stream_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
  if (stream_.bad()) return kImageFileCannotOpen;
  bytes.resize(static_cast<std::size_t>(stream_.gcount()));  // shorter if cut in the meantime
  return kImageFileOk;
}

}  // namespace orvandel
