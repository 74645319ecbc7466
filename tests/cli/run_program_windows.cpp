#include "evaluation/paths.h"
#include "platform/windows_api.h"
#include "tests/cli/run_program.h"

namespace orvandel::cli::test {

using evaluation::PathFromUtf8;
using evaluation::Utf8FromPath;

namespace {

// Programs take a command line apart by themselves: quotes hold an argument together, and a
// backslash is one unless quotes follow the run of backslashes that it stands in.
std::wstring Quoted(const std::wstring& text) {
  std::wstring quoted = L"\"";
  std::size_t num_backslashes = 0;
  for (const wchar_t c : text) {
    if (c == L'"') quoted.append(num_backslashes + 1, L'\\');
    num_backslashes = c == L'\\' ? num_backslashes + 1 : 0;
    quoted += c;
  }
  quoted.append(num_backslashes, L'\\');
  return quoted + L"\"";
}

std::wstring Wide(const std::string& utf8) {
  return PathFromUtf8(utf8).wstring();
}

/// A file that a child process writes to.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    handle_ = CreateFileW(Wide(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                          CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  }
  ~OutputFile() { CloseHandle(handle_); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  HANDLE Handle() const { return handle_; }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

int WaitForExitCode(const PROCESS_INFORMATION& process) {
  DWORD exit_code = static_cast<DWORD>(-1);
  WaitForSingleObject(process.hProcess, INFINITE);
  GetExitCodeProcess(process.hProcess, &exit_code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(exit_code);
}

}  // namespace

int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& standard_output, const std::string& standard_error) {
  std::wstring command = Quoted(Wide(program));
  for (const std::string& argument : arguments)
    command += L" " + Quoted(Wide(argument));

  const OutputFile out(standard_output);
  const OutputFile err(standard_error);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = out.Handle();
  startup.hStdError = err.Handle();
  PROCESS_INFORMATION process = {};
  constexpr BOOL kInheritHandles = TRUE;
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, kInheritHandles, 0, nullptr,
                      nullptr, &startup, &process))
    return -1;
  return WaitForExitCode(process);
}

ScopedVariable::ScopedVariable(const std::string& name, const std::string& value) : name_(name) {
  if (const DWORD size = GetEnvironmentVariableW(Wide(name).c_str(), nullptr, 0)) {
    std::wstring before(size, L'\0');
    GetEnvironmentVariableW(Wide(name).c_str(), before.data(), size);
    before.pop_back();  // the null
    value_before_ = Utf8FromPath(before);
  }
  SetEnvironmentVariableW(Wide(name).c_str(), Wide(value).c_str());
}

ScopedVariable::~ScopedVariable() {
  SetEnvironmentVariableW(Wide(name_).c_str(),
                          value_before_ ? Wide(*value_before_).c_str() : nullptr);
}

}  // namespace orvandel::cli::test
