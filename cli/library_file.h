#pragma once

#include <functional>
#include <string>

namespace orvandel::cli {

/// What one of the library's functions writes to a file, for those that open files as the C library
/// does: on Windows they cannot be given every name, and elsewhere they do not replace an older
/// file as a whole.
///
/// @param write  called once with the path of a temporary file; returns 0 when it was written.
/// @return       the file's bytes. Throws FileError when it was not written.
std::string BytesWritten(const std::function<int(const char* path)>& write);

}  // namespace orvandel::cli
