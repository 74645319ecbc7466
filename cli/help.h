#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace orvandel::cli {

/// The parts of a help text that are not made from the options.
struct HelpText {
  const char* about;   ///< what the command does, first
  const char* usage;   ///< the command line, behind "Usage: "
  const char* footer;  ///< meanings and examples, last
};

/// Prints --help, every description wrapped for a terminal of 80 columns.
class HelpFormatter : public CLI::Formatter {
 public:
  explicit HelpFormatter(const HelpText& text);

  std::string make_description(const CLI::App* app) const override;
  std::string make_usage(const CLI::App* app, std::string name) const override;
  std::string make_option(const CLI::Option* option, bool is_positional) const override;
  std::string make_subcommand(const CLI::App* subcommand) const override;
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;

 private:
  HelpText text_;
};

/// Adds a subcommand with its help.
///
/// @param summary  for the list of commands, one line.
CLI::App& AddSubcommand(CLI::App& program, const char* name, const char* summary,
                        const HelpText& text);

/// The text in lines of at most `width` columns, broken at blanks; words longer than that stand
/// alone. Line breaks of the text stay.
std::string WrapText(const std::string& text, std::size_t width);

}  // namespace orvandel::cli
