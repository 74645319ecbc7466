#include "evaluation/csv.h"

namespace orvandel::evaluation {

std::vector<std::string> SplitAtCommas(std::string_view text) {
  std::vector<std::string> fields;
  for (;;) {
    const std::size_t comma = text.find(',');
    fields.emplace_back(text.substr(0, comma));
    if (comma == std::string_view::npos) return fields;
    text.remove_prefix(comma + 1);
  }
}

std::vector<std::string> SplitCsvLine(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool doubled = quoted && line.substr(i, 2) == "\"\"";
    if (doubled) {
      fields.back() += '"';
      ++i;
    } else if (line[i] == '"') {
      quoted = !quoted;
    } else if (line[i] == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += line[i];
    }
  }
  return fields;
}

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + '"';
}

}  // namespace orvandel::evaluation
