// The tool's command line, an argument a line, and behind a line "%%" the manifest of a suite.
// Files are written in a temporary folder only: inputs whose names could lead out of it are passed
// over.

#include "cli/tool.h"

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/files.h"
#include "fuzz/images.h"
#include "fuzz/require.h"
#include "fuzz/target.h"

namespace orvandel::fuzz {
namespace {

bool LeadsElsewhere(std::string_view text) {
  return text.find_first_of("/\\:~") != std::string_view::npos ||
         text.find("..") != std::string_view::npos;
}

struct Input {
  std::vector<std::string> arguments{"orvandel"};
  std::string manifest;
};

Input InputFrom(const std::string& text) {
  constexpr std::size_t kMostArguments = 24;
  Input input;
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line) && line != "%%") {
    if (input.arguments.size() < kMostArguments) input.arguments.push_back(line);
  }
  std::ostringstream rest;
  rest << lines.rdbuf();
  input.manifest = rest.str();
  return input;
}

/// A bright corner piece on dark ground; `shift` moves it.
Bytes ImageBytes(int width, int height, int shift) {
  const auto at = static_cast<std::uint8_t>(4 + shift);
  const std::uint8_t rectangles[] = {0, 0, 255, 255, 40, at, at, 15, 6, 200, at, at, 5, 11, 200};
  ByteSource source(rectangles, sizeof rectangles);
  const ImagePtr image = PaintedImage(source, width, height, 3);
  const ScratchFolder folder;
  ORVANDEL_REQUIRE(im_file_write(image.get(), folder.File("image.bmp").c_str(), 1) == 0);
  return ReadBytes(folder.File("image.bmp"));
}

/// p.bmp and s.bmp show the same part, which k_qrsi.bmp holds as knowledge; so does the suite.
void FillFolder(const std::filesystem::path& folder, const std::string& manifest) {
  static const Bytes pattern = ImageBytes(26, 22, 0);
  static const Bytes scene = ImageBytes(44, 36, 9);
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder / "suite");
  for (const char* name : {"p.bmp", "k_qrsi.bmp", "suite/p.bmp"})
    WriteBytes((folder / name).string(), pattern);
  for (const char* name : {"s.bmp", "suite/s.bmp"})
    WriteBytes((folder / name).string(), scene);
  std::ofstream(folder / "suite/manifest.csv", std::ios::binary) << manifest;
}

int RunTool(std::vector<std::string> arguments) {
  std::vector<char*> argv;
  for (std::string& argument : arguments)
    argv.push_back(argument.data());
  argv.push_back(nullptr);
  return cli::RunTool(static_cast<int>(arguments.size()), argv.data());
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvandel::fuzz;
  static const ScratchFolder folder;
  const std::string text(data, data + size);
  if (LeadsElsewhere(text)) return 0;
  const Input input = InputFrom(text);
  const std::filesystem::path before = std::filesystem::current_path();
  FillFolder(folder.Path() / "run", input.manifest);
  std::filesystem::current_path(folder.Path() / "run");
  const int status = RunTool(input.arguments);
  std::filesystem::current_path(before);
  ORVANDEL_REQUIRE(status >= 0 && status <= 2);
  return 0;
}
