#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvandel::evaluation {

/// A CSV file whose first line names its columns, read row by row. What is wrong with it is a
/// FileError that names the line.
class CsvFile {
 public:
  /// Opens the file and reads the names.
  ///
  /// @param needed       columns that must be there, in any order and among others.
  /// @param if_unreadable  the reason to give when the file cannot be opened.
  CsvFile(std::filesystem::path path, std::span<const std::string_view> needed,
          const std::string& if_unreadable);

  /// Goes on to the next row that is not blank; false when there is none.
  bool NextRow();

  // Of the row.

  /// @param column  one of the needed ones.
  const std::string& Field(std::string_view column) const;
  double Number(std::string_view column) const;

  /// Throws the FileError of the line that was read last.
  [[noreturn]] void Fail(const std::string& reason) const;

 private:
  std::filesystem::path path_;
  std::ifstream file_;
  int line_number_ = 1;
  std::map<std::string, std::size_t, std::less<>> column_of_;
  std::vector<std::string> row_;
};

}  // namespace orvandel::evaluation
