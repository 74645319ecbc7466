#pragma once

#include <cstddef>
#include <string_view>

namespace orvandel::cli {

/// A bar on standard error while many images are worked through. Silent where standard error is
/// no terminal, and for a handful of steps.
class ProgressBar {
 public:
  explicit ProgressBar(std::size_t num_steps);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// Shows the step that begins.
  void Begin(std::string_view label);
  /// Counts a step as done.
  void Advance();
  /// Takes the bar off the terminal, so that other text can be printed; it returns with the next
  /// step.
  void Hide();

 private:
  std::size_t num_steps_;
  std::size_t num_done_ = 0;
  bool active_;
  std::size_t visible_length_ = 0;  // of the line on the terminal
};

}  // namespace orvandel::cli
