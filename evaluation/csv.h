#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvandel::evaluation {

/// The fields between commas; quotes mean nothing.
std::vector<std::string> SplitAtCommas(std::string_view text);

/// The fields of one line of a CSV file. A field may stand in double quotes, a double quote in it
/// doubled; fields do not run over lines. A carriage return at the end is dropped.
std::vector<std::string> SplitCsvLine(std::string_view line);

/// The field as a CSV file holds it: quoted where it contains a comma, a quote or a line break.
std::string CsvField(std::string_view text);

}  // namespace orvandel::evaluation
