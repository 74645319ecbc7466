#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvandel::cli::test {

/// Runs a program to its end, with its output streams into files. Arguments reach it as they are;
/// all text is UTF-8.
///
/// @return  its exit code; -1 where it did not start or came to a bad end.
int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& standard_output, const std::string& standard_error);

/// Gives a variable of the environment that programs run in a value, for as long as it lives.
class ScopedVariable {
 public:
  ScopedVariable(const std::string& name, const std::string& value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  std::string name_;
  std::optional<std::string> value_before_;
};

}  // namespace orvandel::cli::test
