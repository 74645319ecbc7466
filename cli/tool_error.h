#pragma once

#include <stdexcept>

#include "evaluation/file_error.h"

namespace orvandel::cli {

/// What the program returns to the shell.
enum ExitCode : int {
  kExitSuccess = 0,
  kExitNotFound = 1,  ///< `find`: the pattern is missing in at least one scene
  kExitError = 2,     ///< a usage error, or a file that cannot be used
};

/// The command line cannot be obeyed; what() says why and what would do.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

using evaluation::FileError;

}  // namespace orvandel::cli
