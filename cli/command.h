#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace orvandel::cli {

/// One command of the program: its options in `app`, and what it does once they are parsed.
struct Command {
  CLI::App* app = nullptr;
  /// @return  an ExitCode. Throws UsageError and FileError.
  std::function<int()> run;
};

// Each adds its subcommand to the program's options.

Command AddFindCommand(CLI::App& program);
Command AddTrainCommand(CLI::App& program);
Command AddEdgesCommand(CLI::App& program);
Command AddContoursCommand(CLI::App& program);
Command AddLinesCommand(CLI::App& program);
Command AddEvaluateCommand(CLI::App& program);

}  // namespace orvandel::cli
