#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace orvandel::cli {

/// Writes a file; an older one of that name is replaced only by a complete new one. Throws
/// FileError.
void WriteFile(const std::string& path, std::string_view bytes);

/// As `WriteFile`, for a writer that wants a path: `write` makes the file that it is told to and
/// says whether it could.
void WriteFileBy(const std::string& path,
                 const std::function<bool(const std::string& temporary_path)>& write);

/// Makes a folder and those that it lies in. Throws FileError.
void MakeFolder(const std::string& path);

/// Throws the FileError of a file that could not be written, with the likeliest reason.
[[noreturn]] void ThrowNotWritten(const std::string& path);

}  // namespace orvandel::cli
