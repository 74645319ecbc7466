#include "cli/help.h"

#include <memory>
#include <sstream>
#include <utility>

namespace orvandel::cli {
namespace {

constexpr std::size_t kNameWidth = 26;
constexpr std::size_t kTextWidth = 80 - kNameWidth;

std::string Entry(const std::string& name, const std::string& description) {
  std::ostringstream out;
  CLI::detail::format_help(out, name, WrapText(description, kTextWidth), kNameWidth);
  return out.str();
}

std::string WrapLine(const std::string& line, std::size_t width) {
  std::istringstream words(line);
  std::string wrapped;
  std::size_t column = 0;
  for (std::string word; words >> word;) {
    if (column > 0 && column + 1 + word.size() > width) {
      wrapped += '\n';
      column = 0;
    } else if (column > 0) {
      wrapped += ' ';
      ++column;
    }
    wrapped += word;
    column += word.size();
  }
  return wrapped;
}

}  // namespace

std::string WrapText(const std::string& text, std::size_t width) {
  std::istringstream lines(text);
  std::string wrapped;
  for (std::string line; std::getline(lines, line);) {
    if (!wrapped.empty()) wrapped += '\n';
    wrapped += WrapLine(line, width);
  }
  return wrapped;
}

HelpFormatter::HelpFormatter(const HelpText& text) : text_(text) {
  label("Positionals", "Arguments");
}

std::string HelpFormatter::make_description(const CLI::App*) const {
  return std::string(text_.about) + "\n";
}

std::string HelpFormatter::make_usage(const CLI::App*, std::string) const {
  return std::string("\nUsage: ") + text_.usage + "\n";
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool is_positional) const {
  return Entry(make_option_name(option, is_positional) + make_option_opts(option),
               make_option_desc(option));
}

std::string HelpFormatter::make_subcommand(const CLI::App* subcommand) const {
  return Entry(subcommand->get_name(), subcommand->get_description());
}

std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode mode) const {
  const std::string help = Formatter::make_help(app, std::move(name), mode);
  return CLI::detail::find_and_replace(help, "\n\n\n", "\n\n");
}

CLI::App& AddSubcommand(CLI::App& program, const char* name, const char* summary,
                        const HelpText& text) {
  CLI::App* const app = program.add_subcommand(name, summary);
  app->formatter(std::make_shared<HelpFormatter>(text));
  app->footer(text.footer);
  app->set_help_flag("-h,--help", "Print this help and leave.");
  return *app;
}

}  // namespace orvandel::cli
