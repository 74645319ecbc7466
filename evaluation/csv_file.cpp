#include "evaluation/csv_file.h"

#include <optional>
#include <utility>

#include <fmt/format.h>

#include "evaluation/csv.h"
#include "evaluation/file_error.h"
#include "evaluation/number_text.h"
#include "evaluation/paths.h"

namespace orvandel::evaluation {

CsvFile::CsvFile(std::filesystem::path path, std::span<const std::string_view> needed,
                 const std::string& if_unreadable)
    : path_(std::move(path)), file_(path_, std::ios::binary) {
  std::error_code ignored;
  if (!file_ || std::filesystem::is_directory(path_, ignored))
    throw FileError(Utf8FromPath(path_), if_unreadable);
  std::string line;
  std::getline(file_, line);
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
  const std::vector<std::string> names = SplitCsvLine(line);
  for (std::size_t i = 0; i < names.size(); ++i)
    column_of_.emplace(names[i], i);
  for (const std::string_view column : needed) {
    if (!column_of_.contains(column))
      Fail(fmt::format("the column '{}' is missing from the header", column));
  }
}

bool CsvFile::NextRow() {
  std::string line;
  while (std::getline(file_, line)) {
    ++line_number_;
    if (line.find_first_not_of(" \r") == std::string::npos) continue;
    row_ = SplitCsvLine(line);
    return true;
  }
  return false;
}

const std::string& CsvFile::Field(std::string_view column) const {
  const std::size_t i = column_of_.find(column)->second;
  if (i >= row_.size()) Fail(fmt::format("'{}' is missing", column));
  return row_[i];
}

double CsvFile::Number(std::string_view column) const {
  const std::string& text = Field(column);
  const std::optional<double> number = ParseNumber(text);
  if (!number) Fail(fmt::format("{} '{}' is not a number", column, text));
  return *number;
}

void CsvFile::Fail(const std::string& reason) const {
  throw FileError(Utf8FromPath(path_), fmt::format("line {}: {}", line_number_, reason));
}

}  // namespace orvandel::evaluation
