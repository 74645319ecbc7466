#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <system_error>

namespace orvandel {

/// Writes a file completely or not at all: the bytes go into a new file beside the target, reach
/// the disk, and then take the target's place. After a failure the old file is as it was and
/// nothing is left beside it.
///
/// A symbolic link keeps pointing where it does; the file behind it is replaced. An existing file's
/// permissions are kept, and one that nobody may write is left alone. A target that is no regular
/// file (a device, a pipe) is written directly.
///
/// @return  nothing for success, otherwise the first failure. No exception leaves the function.
std::error_code WriteFileAtomically(const std::filesystem::path& target,
                                    std::span<const std::byte> bytes) noexcept;

/// Fills the file at the given path, which exists and is empty, and returns what went wrong.
using FileWriter = std::function<std::error_code(const std::filesystem::path& file)>;

/// The same for contents that something else writes: `write` is called once with the path of the
/// new file, which has the target's extension. An exception from it counts as a failure.
std::error_code ReplaceFileAtomically(const std::filesystem::path& target,
                                      const FileWriter& write) noexcept;

}  // namespace orvandel
