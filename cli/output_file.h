#pragma once

#include <string>
#include <string_view>

namespace orvandel::cli {

/// Writes a file; an older one of that name is replaced only by a complete new one. Throws
/// FileError.
void WriteFile(const std::string& path, std::string_view bytes);

/// Makes a folder and those that it lies in. Throws FileError.
void MakeFolder(const std::string& path);

/// Throws the FileError of a file that could not be written, with the likeliest reason.
[[noreturn]] void ThrowNotWritten(const std::string& path);

}  // namespace orvandel::cli
