#include "cli/report.h"

#include <cstdio>

#include "cli/output_file.h"
#include "cli/tool_error.h"

namespace orvandel::cli {

void Report::Print(std::string_view text) {
  if (!path_.empty()) {
    text_ += text;
    return;
  }
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void Report::Finish() {
  if (!path_.empty()) {
    WriteFile(path_, text_);
    return;
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
    throw FileError("standard output", "cannot be written; is the disk full?");
}

}  // namespace orvandel::cli
