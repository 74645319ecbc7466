#include "tests/cli/tool_run.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/cli/temp_folder.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace orvandel::cli::test {
namespace {

// For a shell that takes single quotes literally.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text)
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

int ExitCodeOf(int status) {
#if defined(_WIN32)
  return status;
#else
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
}

std::string CommandLine(const std::vector<std::string>& arguments) {
  std::string command = Quoted(ORVANDEL_TOOL);
  for (const std::string& argument : arguments)
    command += " " + Quoted(argument);
  return command;
}

}  // namespace

ToolRun RunOrvandelInto(const std::string& standard_output,
                        const std::vector<std::string>& arguments) {
  const std::string err_file = OwnTempPath().string();
  const std::string command =
      CommandLine(arguments) + " > " + Quoted(standard_output) + " 2> " + Quoted(err_file);
  ToolRun run;
  run.exit_code = ExitCodeOf(std::system(command.c_str()));
  run.err = ReadFile(err_file);
  std::filesystem::remove(err_file);
  return run;
}

ToolRun RunOrvandel(const std::vector<std::string>& arguments) {
  const std::string out_file = OwnTempPath().string();
  ToolRun run = RunOrvandelInto(out_file, arguments);
  run.out = ReadFile(out_file);
  std::filesystem::remove(out_file);
  return run;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteTextFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

bool FileExists(const std::string& path) {
  return std::filesystem::exists(path);
}

long NumLines(const std::string& text) {
  return std::count(text.begin(), text.end(), '\n');
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace orvandel::cli::test
