#include "cli/tool.h"

#if defined(_WIN32)
#include "cli/windows_text.h"

int wmain(int argc, wchar_t** argv) {
  const orvandel::cli::Utf8Console console;
  orvandel::cli::Utf8Arguments arguments(argc, argv);
  return orvandel::cli::RunTool(argc, arguments.Argv());
}
#else
int main(int argc, char** argv) {
  return orvandel::cli::RunTool(argc, argv);
}
#endif
