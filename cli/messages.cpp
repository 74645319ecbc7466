#include "cli/messages.h"

#include <cstdio>

#include <fmt/format.h>

namespace orvandel::cli {

std::string Printable(std::string_view text) {
  std::string printable(text);
  for (char& c : printable) {
    if ((c >= 0 && c < ' ') || c == '\x7F') c = '?';
  }
  return printable;
}

void PrintError(std::string_view text) {
  fmt::print(stderr, "orvandel: {}\n", Printable(text));
}

void PrintNote(std::string_view text) {
  fmt::print(stderr, "orvandel: note: {}\n", Printable(text));
}

}  // namespace orvandel::cli
