#pragma once

#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

namespace orvandel::cli::test {

using orvandel::test::ScratchFolder;

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

/// A file's bytes. Paths are UTF-8.
std::string ReadFile(const std::string& path);
void WriteTextFile(const std::string& path, const std::string& text);
bool FileExists(const std::string& path);

/// Number of line breaks.
long NumLines(const std::string& text);
bool Contains(const std::string& text, const std::string& part);

}  // namespace orvandel::cli::test
