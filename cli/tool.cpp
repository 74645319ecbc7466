#include "cli/tool.h"

#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/report.h"
#include "cli/tool_error.h"
#include "cli/version.h"

namespace orvandel::cli {
namespace {

constexpr const char* kAbout =
    "Finds a geometric pattern in grey pictures, at any rotation and many sizes.";
constexpr const char* kUsage = "orvandel COMMAND [options] ...";
constexpr const char* kFooter =
    R"(`orvandel COMMAND --help` tells what a command's options and results mean.

Start here:
  orvandel find part.png scene.png --overlay found
             learns part.png, looks for it in scene.png, prints position, angle,
             scale and score, and draws what it found in found/scene.overlay.png
  orvandel find part.png tray.png --max-matches 0
             finds all that lie in the picture
  orvandel train part.png --overlay learnt --zoom 4
             tells what is learnt of a picture, and shows it
  orvandel evaluate suite
             measures how many are found, and how exactly, in pictures whose
             truth is known

Two engines look for patterns: shapes, the default, takes any pattern that has
edges; segments (--engine segments) needs straight ones, and `contours` and
`lines` show what it sees.

Exit status: 0 done (for find: found in every scene), 1 not found in some scene,
2 a usage error or a file that cannot be used.)";

// The parser's message, or a plainer one where it counts arguments.
std::string InPlainWords(const std::string& message) {
  const std::size_t missing = message.find(": 1 required ");
  if (missing != std::string::npos) return message.substr(0, missing) + ": its value is missing";
  const std::size_t repeated = message.find(": At Most 1 required");
  if (repeated != std::string::npos) return message.substr(0, repeated) + ": given more than once";
  return message;
}

class Program {
 public:
  Program() : app_("", "orvandel") {
    app_.formatter(std::make_shared<HelpFormatter>(HelpText{kAbout, kUsage, kFooter}));
    app_.footer(kFooter);
    app_.set_help_flag("-h,--help", "Print this help and leave.");
    app_.set_version_flag("--version", std::string("orvandel ") + kVersion,
                          "Print the version and leave.");
    app_.require_subcommand(1);
    app_.allow_windows_style_options(false);  // on Windows too, /folder/file is a path
    commands_ = {AddFindCommand(app_),  AddTrainCommand(app_),    AddEvaluateCommand(app_),
                 AddEdgesCommand(app_), AddContoursCommand(app_), AddLinesCommand(app_)};
    for (const Command& command : commands_)
      command.app->group("Commands");
  }

  int Run(int argc, char** argv) {
    if (argc > 1) CheckCommandName(argv[1]);
    try {
      app_.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
      return PrintAndLeave(std::string(version.what()) + "\n");
    } catch (const CLI::CallForHelp&) {
      return PrintAndLeave(ParsedApp().help());
    } catch (const CLI::ParseError& error) {
      throw UsageError(WhatIsWrong(error));
    }
    return ParsedCommand()->run();
  }

  /// " find" once it is known that this command was asked for.
  std::string ParsedName() const {
    const Command* const command = ParsedCommand();
    return command ? " " + command->app->get_name() : "";
  }

 private:
  static int PrintAndLeave(const std::string& text) {
    Report report("");
    report.Print(text);
    report.Finish();
    return kExitSuccess;
  }

  void CheckCommandName(const std::string& name) const {
    if (name.empty() || name.front() == '-') return;
    for (const Command& command : commands_) {
      if (command.app->get_name() == name) return;
    }
    throw UsageError(fmt::format("there is no command '{}'; the commands are {}", name, Names()));
  }

  std::string Names() const {
    std::string names;
    for (const Command& command : commands_)
      names += (names.empty() ? "" : ", ") + command.app->get_name();
    return names;
  }

  std::string WhatIsWrong(const CLI::ParseError& error) const {
    if (ParsedCommand()) return InPlainWords(error.what());
    const std::vector<std::string> unknown = app_.remaining();
    if (!unknown.empty()) return fmt::format("'{}' is no option here", unknown.front());
    return "a command is missing; the commands are " + Names();
  }

  const Command* ParsedCommand() const {
    for (const Command& command : commands_) {
      if (command.app->parsed()) return &command;
    }
    return nullptr;
  }

  const CLI::App& ParsedApp() const {
    const Command* const command = ParsedCommand();
    return command ? *command->app : app_;
  }

  CLI::App app_;
  std::vector<Command> commands_;
};

int RunProgram(Program& program, int argc, char** argv) {
  try {
    return program.Run(argc, argv);
  } catch (const UsageError& error) {
    PrintError(fmt::format("{} (see `orvandel{} --help`)", error.what(), program.ParsedName()));
  }
  return kExitError;
}

}  // namespace

int RunTool(int argc, char** argv) {
  try {
    Program program;
    return RunProgram(program, argc, argv);
  } catch (const FileError& error) {
    PrintError(error.what());
  } catch (const std::bad_alloc&) {
    PrintError("out of memory");
  } catch (const std::exception& error) {
    PrintError(error.what());
  }
  return kExitError;
}

}  // namespace orvandel::cli
