#pragma once

#include <memory>
#include <string>
#include <vector>

#include "evaluation/image_file.h"
#include "evaluation/manifest.h"

namespace orvandel::bench {

/// A search whose answer is known.
struct ComparedCase {
  std::string suite;
  std::shared_ptr<const evaluation::ImageFile> pattern;
  std::shared_ptr<const evaluation::ImageFile> scene;
  evaluation::TestCase truth;
};

/// Scenes that the project draws itself, half of them without clutter, any angle and scales of 0.5 to 2; and some that hold
/// everything but the pattern.
std::vector<ComparedCase> DrawnCases();

/// The cases of all suites of the folders, which are suites or hold some. Throws std::runtime_error.
std::vector<ComparedCase> CasesOfSuites(const std::vector<std::string>& folders);

}  // namespace orvandel::bench
