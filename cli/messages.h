#pragma once

#include <string_view>

namespace orvandel::cli {

// Lines on standard error.

/// "orvandel: text".
void PrintError(std::string_view text);

/// "orvandel: note: text".
void PrintNote(std::string_view text);

}  // namespace orvandel::cli
