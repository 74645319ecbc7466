#include "tests/cli/temp_folder.h"

#include <atomic>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace orvandel::cli::test {

std::filesystem::path OwnTempPath() {
  static const unsigned run = std::random_device()();
  static std::atomic<int> num_paths = 0;
  return std::filesystem::path(testing::TempDir()) /
         ("orvandel_cli_" + std::to_string(run) + "_" + std::to_string(++num_paths));
}

}  // namespace orvandel::cli::test
