#pragma once

namespace orvandel::cli {

/// The whole program: parses the command line, runs the command, and turns every failure into one
/// line on standard error.
///
/// @return  an ExitCode.
int RunTool(int argc, char** argv);

}  // namespace orvandel::cli
