#pragma once

#include <string>
#include <vector>

#include "tests/support/contains.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::cli::test {

using orvandel::test::Contains;
using orvandel::test::Contents;
using orvandel::test::ScratchFolder;
using orvandel::test::WriteBytes;

struct ToolRun {
  int exit_code = -1;
  std::string out;
  std::string err;
};

/// Runs the program as a shell would. Lines of its output end with a line feed alone.
ToolRun RunOrvandel(const std::vector<std::string>& arguments);

/// The same with standard output into a file, such as /dev/full.
ToolRun RunOrvandelInto(const std::string& standard_output,
                        const std::vector<std::string>& arguments);

/// Paths are UTF-8.
bool FileExists(const std::string& path);

/// Number of line breaks.
long NumLines(const std::string& text);

}  // namespace orvandel::cli::test
