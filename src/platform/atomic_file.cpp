#include "platform/atomic_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <new>
#include <random>
#include <string>
#include <utility>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace orvandel {
namespace {

namespace fs = std::filesystem;

std::error_code LastError() {
  return {errno, std::generic_category()};
}

// The handful of calls that the two families of systems spell differently.
#if defined(_WIN32)
constexpr int kWrite = _O_WRONLY | _O_BINARY | _O_NOINHERIT;
constexpr int kCreateNew = _O_CREAT | _O_EXCL;
constexpr int kForAll = _S_IREAD | _S_IWRITE;
constexpr int kForOwner = kForAll;

int Open(const fs::path& path, int flags, int mode) {
  return _wopen(path.c_str(), flags, mode);
}
std::ptrdiff_t Write(int file, const std::byte* bytes, std::size_t count) {
  return _write(file, bytes, static_cast<unsigned>(count));
}
int Flush(int file) {
  return _commit(file);
}
int Close(int file) {
  return _close(file);
}
#else
constexpr int kWrite = O_WRONLY | O_CLOEXEC;
constexpr int kCreateNew = O_CREAT | O_EXCL;
constexpr int kForAll = 0666;
constexpr int kForOwner = 0600;

int Open(const fs::path& path, int flags, int mode) {
  return open(path.c_str(), flags, mode);
}
std::ptrdiff_t Write(int file, const std::byte* bytes, std::size_t count) {
  return write(file, bytes, count);
}
int Flush(int file) {
  return fsync(file);
}
int Close(int file) {
  return close(file);
}
#endif

/// A file open for writing.
class OutputFile {
 public:
  explicit OutputFile(const fs::path& path, int flags = 0, int mode = 0)
      : file_(Open(path, kWrite | flags, mode)) {}
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() {
    if (IsOpen()) orvandel::Close(file_);
  }

  bool IsOpen() const { return file_ >= 0; }

  std::error_code Append(std::span<const std::byte> bytes) {
    constexpr std::size_t kLongestWrite = 1U << 30;  // some systems refuse or cut longer ones
    while (!bytes.empty()) {
      const std::ptrdiff_t written =
          orvandel::Write(file_, bytes.data(), std::min(bytes.size(), kLongestWrite));
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return LastError();
      if (written == 0) return std::make_error_code(std::errc::io_error);
      bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
  }

  std::error_code FlushToDisk() {
    return orvandel::Flush(file_) == 0 ? std::error_code() : LastError();
  }

  /// Some file systems report a full disk only here.
  std::error_code Close() {
    return orvandel::Close(std::exchange(file_, -1)) == 0 ? std::error_code() : LastError();
  }

 private:
  int file_;
};

/// Removes its file unless that has been moved away.
class TemporaryFile {
 public:
  explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove(path_, ignored);
  }

  const fs::path& Path() const { return path_; }

  std::error_code MoveTo(const fs::path& target) {
    std::error_code error;
    fs::rename(path_, target, error);
    if (!error) path_.clear();
    return error;
  }

 private:
  fs::path path_;
};

/// Where a chain of symbolic links ends, whether or not there is a file.
fs::path BehindLinks(fs::path path, std::error_code& error) {
  constexpr int kLongestChain = 40;
  for (int i = 0; i < kLongestChain; ++i) {
    std::error_code not_there;
    if (!fs::is_symlink(fs::symlink_status(path, not_there))) return path;
    path = path.parent_path() / fs::read_symlink(path, error);
    if (error) return {};
  }
  error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
  return {};
}

bool IsWriteProtected(const fs::file_status& status) {
  constexpr fs::perms kAnyWrite =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  return fs::exists(status) && (status.permissions() & kAnyWrite) == fs::perms::none;
}

/// A name that no other process picks, short so that it fits wherever the target's does.
fs::path TemporaryName(const fs::path& target) {
  constexpr std::size_t kLongestExtension = 16;
  constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string name = ".orvandel-";
  for (int i = 0; i < 16; ++i)
    name += kDigits[random() % 16];

  fs::path path = target.parent_path() / name;
  const fs::path extension = target.extension();
  if (extension.native().size() <= kLongestExtension) path += extension;
  return path;
}

/// Makes an empty file beside the target, with the target's permissions where there is one.
fs::path CreateTemporary(const fs::path& target, const fs::file_status& status,
                         std::error_code& error) {
  constexpr int kMaxTries = 100;
  for (int i = 0; i < kMaxTries; ++i) {
    fs::path path = TemporaryName(target);
    const OutputFile file(path, kCreateNew, fs::exists(status) ? kForOwner : kForAll);
    if (file.IsOpen()) {
      std::error_code ignored;  // a file system without permissions is none the worse
      if (fs::exists(status)) fs::permissions(path, status.permissions(), ignored);
      return path;
    }
    error = LastError();
    if (error != std::errc::file_exists) return {};
  }
  return {};
}

std::error_code FlushToDisk(const fs::path& path) {
  OutputFile file(path);
  if (!file.IsOpen()) return LastError();
  const std::error_code error = file.FlushToDisk();
  return error ? error : file.Close();
}

std::error_code ReplaceRegularFile(const fs::path& target, const fs::file_status& status,
                                   const FileWriter& write) {
  if (IsWriteProtected(status)) return std::make_error_code(std::errc::permission_denied);
  std::error_code error;
  const fs::path replaced = BehindLinks(target, error);
  if (error) return error;
  TemporaryFile temporary(CreateTemporary(replaced, status, error));
  if (temporary.Path().empty()) return error;

  error = write(temporary.Path());
  if (!error) error = FlushToDisk(temporary.Path());
  return error ? error : temporary.MoveTo(replaced);
}

std::error_code WriteOrReplace(const fs::path& target, const FileWriter& write) {
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (status.type() == fs::file_type::none) return error;
  if (fs::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
  if (fs::exists(status) && !fs::is_regular_file(status)) return write(target);
  return ReplaceRegularFile(target, status, write);
}

std::error_code WriteBytes(const fs::path& path, std::span<const std::byte> bytes) {
  OutputFile file(path);
  if (!file.IsOpen()) return LastError();
  const std::error_code error = file.Append(bytes);
  return error ? error : file.Close();
}

}  // namespace

std::error_code ReplaceFileAtomically(const fs::path& target, const FileWriter& write) noexcept {
  try {
    return WriteOrReplace(target, write);
  } catch (const std::bad_alloc&) {
    return std::make_error_code(std::errc::not_enough_memory);
  } catch (const std::system_error& error) {
    return error.code();
  } catch (...) {
    return std::make_error_code(std::errc::io_error);
  }
}

std::error_code WriteFileAtomically(const fs::path& target,
                                    std::span<const std::byte> bytes) noexcept {
  return ReplaceFileAtomically(target,
                               [bytes](const fs::path& file) { return WriteBytes(file, bytes); });
}

}  // namespace orvandel
