#include "evaluation/case_params.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>

#include <fmt/format.h>

#include "evaluation/csv_file.h"
#include "evaluation/number_text.h"
#include "evaluation/paths.h"

namespace orvandel::evaluation {
namespace {

constexpr std::array<std::string_view, 2> kParamColumns = {"case", "params"};

/// "name=value;name=value"; a name alone has an empty value.
std::map<std::string, std::string> ParseValues(std::string_view text) {
  std::map<std::string, std::string> values;
  while (!text.empty()) {
    const std::string_view item = text.substr(0, text.find(';'));
    text.remove_prefix(std::min(item.size() + 1, text.size()));
    const std::size_t equals = std::min(item.find('='), item.size());
    const std::string_view value = item.substr(std::min(equals + 1, item.size()));
    if (!item.empty()) values.emplace(item.substr(0, equals), value);
  }
  return values;
}

CaseParams ParamsOfRow(const CsvFile& file) {
  CaseParams params;
  params.values = ParseValues(file.Field("params"));
  if (const auto told = params.values.find("symmetry"); told != params.values.end()) {
    const std::optional<int> fold = ParseInteger(told->second);
    if (!fold || *fold < 0) file.Fail(fmt::format("symmetry '{}' is no fold", told->second));
    params.symmetry.fold = *fold;
    params.tolerance.is_scaled = true;
  }
  if (const auto told = params.values.find("fit_max"); told != params.values.end()) {
    const std::optional<double> px = ParseNumber(told->second);
    if (!px || *px < 0) file.Fail(fmt::format("fit_max '{}' is no distance", told->second));
    params.tolerance.fit_max_px = *px;
  }
  return params;
}

}  // namespace

std::map<std::string, CaseParams> ReadCaseParams(const std::string& path) {
  const std::filesystem::path file_path = PathFromUtf8(path) / "params.csv";
  std::map<std::string, CaseParams> params_of;
  std::error_code ignored;
  if (!std::filesystem::exists(file_path, ignored)) return params_of;
  CsvFile file(file_path, kParamColumns, "no parameters of cases can be read here");
  while (file.NextRow())
    params_of.emplace(file.Field("case"), ParamsOfRow(file));
  return params_of;
}

}  // namespace orvandel::evaluation
