#include "cli/windows_text.h"

#include "platform/windows_api.h"

namespace orvandel::cli {
namespace {

// A half of a surrogate pair, which file names may hold, becomes U+FFFD.
std::string Utf8(const wchar_t* text) {
  constexpr int kUpToNull = -1;
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, kUpToNull, nullptr, 0, nullptr, nullptr);
  if (size < 1) return {};
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, kUpToNull, utf8.data(), size, nullptr, nullptr);
  utf8.pop_back();  // the null
  return utf8;
}

}  // namespace

Utf8Console::Utf8Console() : code_page_before_(GetConsoleOutputCP()) {
  SetConsoleOutputCP(CP_UTF8);
}

Utf8Console::~Utf8Console() {
  // 0 without a console.
  if (code_page_before_ != 0) SetConsoleOutputCP(code_page_before_);
}

Utf8Arguments::Utf8Arguments(int argc, wchar_t** argv) {
  for (int i = 0; i < argc; ++i)
    texts_.push_back(Utf8(argv[i]));
  for (std::string& text : texts_)
    argv_.push_back(text.data());
  argv_.push_back(nullptr);
}

}  // namespace orvandel::cli
