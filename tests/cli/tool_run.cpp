#include "tests/cli/tool_run.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "evaluation/paths.h"
#include "tests/cli/run_program.h"

namespace orvandel::cli::test {
namespace {

// What a program printed has the system's line ends.
std::string TextOf(const std::string& path) {
  std::ifstream file(evaluation::PathFromUtf8(path));
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
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

bool FileExists(const std::string& path) {
  return std::filesystem::exists(evaluation::PathFromUtf8(path));
}

long NumLines(const std::string& text) {
  return static_cast<long>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace orvandel::cli::test
