#pragma once

#include <string>
#include <string_view>

namespace orvandel::cli {

/// The text with a question mark for every control character, as file names may hold them.
std::string Printable(std::string_view text);

// Lines on standard error.

/// "orvandel: text".
void PrintError(std::string_view text);

/// "orvandel: note: text".
void PrintNote(std::string_view text);

}  // namespace orvandel::cli
