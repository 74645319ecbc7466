#include "cli/messages.h"

#include <cstdio>

#include <fmt/format.h>

namespace orvandel::cli {

void PrintError(std::string_view text) {
  fmt::print(stderr, "orvandel: {}\n", text);
}

void PrintNote(std::string_view text) {
  fmt::print(stderr, "orvandel: note: {}\n", text);
}

}  // namespace orvandel::cli
