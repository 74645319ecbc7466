#pragma once

#include <string>
#include <vector>

#include "cli/search_options.h"

namespace orvandel::cli {

/// What `evaluate` is asked to do.
struct EvaluateArguments {
  std::vector<std::string> suites;  ///< folders, or manifest files
  SearchOptions search;
  bool csv = false;        ///< instead of an aligned table
  std::string output;      ///< file for the table; empty for standard output
  std::string cases_file;  ///< CSV file with a line per case; empty for none
  std::string overlay;     ///< folder for overlay images; empty for none
};

/// Searches all suites and prints the table.
///
/// @return  an ExitCode: kExitError when a pattern or scene could not be used. Throws FileError for
///          a suite that cannot be read and for an output that cannot be written.
int Evaluate(const EvaluateArguments& arguments);

}  // namespace orvandel::cli
