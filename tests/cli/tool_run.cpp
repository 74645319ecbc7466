#include "tests/cli/tool_run.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "cli/paths.h"
#include "tests/cli/run_program.h"

namespace orvandel::cli::test {
namespace {

std::string Contents(const std::string& path, std::ios::openmode mode) {
  std::ifstream file(PathFromUtf8(path), mode);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// What a program printed has the system's line ends.
std::string TextOf(const std::string& path) {
  return Contents(path, std::ios::in);
}

}  // namespace

ToolRun RunOrvandelInto(const std::string& standard_output,
                        const std::vector<std::string>& arguments) {
  const ScratchFolder folder;
  const std::string err_file = folder.File("err");
  ToolRun run;
  run.exit_code = RunProgram(ORVANDEL_TOOL, arguments, standard_output, err_file);
  run.err = TextOf(err_file);
  return run;
}

ToolRun RunOrvandel(const std::vector<std::string>& arguments) {
  const ScratchFolder folder;
  const std::string out_file = folder.File("out");
  ToolRun run = RunOrvandelInto(out_file, arguments);
  run.out = TextOf(out_file);
  return run;
}

std::string ReadFile(const std::string& path) {
  return Contents(path, std::ios::binary);
}

void WriteTextFile(const std::string& path, const std::string& text) {
  std::ofstream(PathFromUtf8(path), std::ios::binary) << text;
}

bool FileExists(const std::string& path) {
  return std::filesystem::exists(PathFromUtf8(path));
}

long NumLines(const std::string& text) {
  return static_cast<long>(std::count(text.begin(), text.end(), '\n'));
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace orvandel::cli::test
