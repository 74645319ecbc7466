#include "cli/manifest.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "base/rounding.h"
#include "cli/csv.h"
#include "cli/number_text.h"
#include "cli/paths.h"
#include "cli/tool_error.h"

namespace orvandel::cli {
namespace {

// Manifests put the centre of the top-left pixel at 0, the library at 0.5.
constexpr double kLibraryMinusManifest = 0.5;

constexpr std::array<std::string_view, 8> kColumns = {"case", "pattern", "scene",     "instance",
                                                      "cx",   "cy",      "angle_deg", "scale"};
constexpr const char* kNoInstance = "-1";

std::filesystem::path ManifestPath(const std::string& path) {
  const std::filesystem::path given = PathFromUtf8(path);
  std::error_code ignored;
  return std::filesystem::is_directory(given, ignored) ? given / "manifest.csv" : given;
}

std::string NameOfFolder(const std::filesystem::path& folder) {
  std::error_code ignored;
  const auto absolute = std::filesystem::absolute(folder, ignored).lexically_normal();
  const auto name = absolute.has_filename() ? absolute : absolute.parent_path();
  return Utf8FromPath(name.filename());
}

// Reads the rows of one manifest.
class ManifestReader {
 public:
  explicit ManifestReader(std::filesystem::path path)
      : path_(std::move(path)), folder_(path_.parent_path()) {}

  std::vector<TestCase> Read() {
    std::error_code ignored;
    std::ifstream file(path_, std::ios::binary);
    if (!file || std::filesystem::is_directory(path_, ignored))
      throw FileError(Utf8FromPath(path_), "no manifest of a suite can be read here");
    std::string line;
    std::getline(file, line);
    line_number_ = 1;
    ReadHeader(line);
    while (std::getline(file, line)) {
      ++line_number_;
      if (line.find_first_not_of(" \r") != std::string::npos) AddRow(SplitCsvLine(line));
    }
    if (cases_.empty()) Fail("there are no cases in it");
    return std::move(cases_);
  }

 private:
  [[noreturn]] void Fail(const std::string& reason) const {
    throw FileError(Utf8FromPath(path_), fmt::format("line {}: {}", line_number_, reason));
  }

  void ReadHeader(std::string_view line) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (line.substr(0, kByteOrderMark.size()) == kByteOrderMark)
      line.remove_prefix(kByteOrderMark.size());
    const std::vector<std::string> names = SplitCsvLine(line);
    for (std::size_t i = 0; i < names.size(); ++i)
      column_of_.emplace(names[i], i);
    for (const std::string_view column : kColumns) {
      if (!column_of_.contains(column))
        Fail(fmt::format("the column '{}' is missing from the header", column));
    }
  }

  const std::string& Field(const std::vector<std::string>& row, std::string_view column) const {
    const std::size_t i = column_of_.find(column)->second;
    if (i >= row.size()) Fail(fmt::format("'{}' is missing", column));
    return row[i];
  }

  double Number(const std::vector<std::string>& row, std::string_view column) const {
    const std::string& text = Field(row, column);
    const std::optional<double> number = ParseNumber(text);
    if (!number) Fail(fmt::format("{} '{}' is not a number", column, text));
    return *number;
  }

  void AddRow(const std::vector<std::string>& row) {
    TestCase& test_case = CaseOf(row);
    if (Field(row, "instance") == kNoInstance) return;
    test_case.instances.push_back(
        {Number(row, "cx"), Number(row, "cy"), Number(row, "angle_deg"), Number(row, "scale")});
    if (!(test_case.instances.back().scale > 0)) Fail("the scale must be above 0");
  }

  // The case that the row belongs to, a new one at its first row.
  TestCase& CaseOf(const std::vector<std::string>& row) {
    const std::string& name = Field(row, "case");
    const std::string pattern = PathTo(Field(row, "pattern"));
    const std::string scene = PathTo(Field(row, "scene"));
    const auto [found, is_new] = index_of_.emplace(name, cases_.size());
    if (is_new) cases_.push_back({name, pattern, scene, {}});
    TestCase& test_case = cases_[found->second];
    if (test_case.pattern != pattern || test_case.scene != scene)
      Fail(fmt::format("case '{}' had another pattern or scene before", name));
    return test_case;
  }

  std::string PathTo(const std::string& relative) const {
    if (relative.empty()) Fail("a path is missing");
    return Utf8FromPath((folder_ / PathFromUtf8(relative)).lexically_normal());
  }

  std::filesystem::path path_;
  std::filesystem::path folder_;
  int line_number_ = 0;
  std::map<std::string, std::size_t, std::less<>> column_of_;
  std::map<std::string, std::size_t> index_of_;  // of cases, by name
  std::vector<TestCase> cases_;
};

}  // namespace

Pose PoseOf(const TrueInstance& instance, int pattern_width, int pattern_height) {
  // The centre of the picture, (w - 1) / 2 in the manifest's pixels, is w / 2 in the library's.
  return {.position = {instance.cx + kLibraryMinusManifest, instance.cy + kLibraryMinusManifest},
          .angle = instance.angle_deg * (kPi / 180.0),
          .scale = instance.scale,
          .reference = {pattern_width / 2.0, pattern_height / 2.0}};
}

Suite ReadSuite(const std::string& path) {
  const std::filesystem::path manifest = ManifestPath(path);
  std::error_code ignored;
  if (!std::filesystem::exists(manifest, ignored))
    throw FileError(path, "not a suite: a folder with a manifest.csv is wanted, or that file");
  return {NameOfFolder(manifest.parent_path()), ManifestReader(manifest).Read()};
}

}  // namespace orvandel::cli
