#pragma once

#include <string>
#include <vector>

namespace orvandel::cli {

// Windows' own text is UTF-16; the program's is UTF-8.

/// While one lives, the console that the program writes to takes its output as UTF-8.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned code_page_before_;
};

/// The arguments of `wmain` as those of a `main` that takes UTF-8.
class Utf8Arguments {
 public:
  Utf8Arguments(int argc, wchar_t** argv);

  /// The texts, then null; they live as long as this object.
  char** Argv() { return argv_.data(); }

 private:
  std::vector<std::string> texts_;
  std::vector<char*> argv_;
};

}  // namespace orvandel::cli
