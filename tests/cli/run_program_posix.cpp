#include <cstdlib>

#include <sys/wait.h>

#include "tests/cli/run_program.h"

namespace orvandel::cli::test {
namespace {

// The shell takes single quotes literally.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text)
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

}  // namespace

int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& standard_output, const std::string& standard_error) {
  std::string command = Quoted(program);
  for (const std::string& argument : arguments)
    command += " " + Quoted(argument);
  command += " > " + Quoted(standard_output) + " 2> " + Quoted(standard_error);
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

ScopedVariable::ScopedVariable(const std::string& name, const std::string& value) : name_(name) {
  if (const char* before = std::getenv(name.c_str())) value_before_ = before;
  setenv(name.c_str(), value.c_str(), 1);
}

ScopedVariable::~ScopedVariable() {
  if (value_before_)
    setenv(name_.c_str(), value_before_->c_str(), 1);
  else
    unsetenv(name_.c_str());
}

}  // namespace orvandel::cli::test
