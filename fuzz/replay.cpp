// Sends the files of folders through a target, without a fuzzer: any compiler builds it, and the
// tests run it over the corpus.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "fuzz/files.h"
#include "fuzz/target.h"

namespace {

std::vector<std::filesystem::path> SortedFiles(const char* folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  int num_inputs = 0;
  for (int i = 1; i < argc; ++i) {
    for (const std::filesystem::path& file : SortedFiles(argv[i])) {
      std::fprintf(stderr, "%s\n", file.filename().string().c_str());
      const orvandel::fuzz::Bytes bytes = orvandel::fuzz::ReadBytes(file.string());
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++num_inputs;
    }
  }
  std::fprintf(stderr, "%d inputs\n", num_inputs);
  return num_inputs > 0 ? 0 : 1;
}
