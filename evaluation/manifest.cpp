#include "evaluation/manifest.h"

#include <array>
#include <filesystem>
#include <map>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "evaluation/csv_file.h"
#include "evaluation/file_error.h"
#include "evaluation/paths.h"
#include "evaluation/pose_error.h"

namespace orvandel::evaluation {
namespace {

constexpr std::array<std::string_view, 8> kManifestColumns = {
    "case", "pattern", "scene", "instance", "cx", "cy", "angle_deg", "scale"};
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

// Gathers the rows of a manifest into cases.
class ManifestReader {
 public:
  explicit ManifestReader(const std::filesystem::path& path)
      : file_(path, kManifestColumns, "no manifest of a suite can be read here"),
        folder_(path.parent_path()),
        params_of_(ReadCaseParams(Utf8FromPath(folder_))) {}

  std::vector<TestCase> Read() {
    while (file_.NextRow())
      AddRow();
    if (cases_.empty()) file_.Fail("there are no cases in it");
    return std::move(cases_);
  }

 private:
  void AddRow() {
    TestCase& test_case = CaseOfRow();
    if (file_.Field("instance") == kNoInstance) return;
    const double x = file_.Number("cx");
    const double y = file_.Number("cy");
    const double angle = Radians(file_.Number("angle_deg"));
    const double scale = file_.Number("scale");
    if (!(scale > 0)) file_.Fail("the scale must be above 0");
    test_case.instances.push_back({x, y, angle, scale});
  }

  // The case that the row belongs to, a new one at its first row.
  TestCase& CaseOfRow() {
    const std::string& name = file_.Field("case");
    const std::string pattern = PathTo(file_.Field("pattern"));
    const std::string scene = PathTo(file_.Field("scene"));
    const auto [found, is_new] = index_of_.emplace(name, cases_.size());
    if (is_new) cases_.push_back({name, pattern, scene, {}, params_of_[name]});
    TestCase& test_case = cases_[found->second];
    if (test_case.pattern != pattern || test_case.scene != scene)
      file_.Fail(fmt::format("case '{}' had another pattern or scene before", name));
    return test_case;
  }

  std::string PathTo(const std::string& relative) const {
    if (relative.empty()) file_.Fail("a path is missing");
    return Utf8FromPath((folder_ / PathFromUtf8(relative)).lexically_normal());
  }

  CsvFile file_;
  std::filesystem::path folder_;
  std::map<std::string, CaseParams> params_of_;
  std::map<std::string, std::size_t> index_of_;  // of cases, by name
  std::vector<TestCase> cases_;
};

}  // namespace

Suite ReadSuite(const std::string& path) {
  const std::filesystem::path manifest = ManifestPath(path);
  std::error_code ignored;
  if (!std::filesystem::exists(manifest, ignored))
    throw FileError(path, "not a suite: a folder with a manifest.csv is wanted, or that file");
  return {NameOfFolder(manifest.parent_path()), ManifestReader(manifest).Read()};
}

}  // namespace orvandel::evaluation
