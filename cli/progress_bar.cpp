#include "cli/progress_bar.h"

#include <cstdio>
#include <string>

#include <fmt/format.h>

#include "cli/messages.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace orvandel::cli {
namespace {

constexpr std::size_t kFewSteps = 4;
constexpr std::size_t kBarWidth = 24;
constexpr std::size_t kLabelWidth = 36;  // with up to 5 digits twice, 79 columns in all

bool StandardErrorIsTerminal() {
#if defined(_WIN32)
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace

ProgressBar::ProgressBar(std::size_t num_steps)
    : num_steps_(num_steps), active_(num_steps > kFewSteps && StandardErrorIsTerminal()) {}

ProgressBar::~ProgressBar() {
  Hide();
}

void ProgressBar::Begin(std::string_view label) {
  if (!active_) return;
  const std::size_t filled = kBarWidth * num_done_ / num_steps_;
  const std::string bar = std::string(filled, '#') + std::string(kBarWidth - filled, '.');
  const std::string line = fmt::format("\r[{}] {}/{}  {:{}.{}}", bar, num_done_ + 1, num_steps_,
                                       Printable(label), kLabelWidth, kLabelWidth);
  std::fputs(line.c_str(), stderr);
  std::fflush(stderr);
  visible_length_ = line.size();
}

void ProgressBar::Advance() {
  ++num_done_;
}

void ProgressBar::Hide() {
  if (visible_length_ == 0) return;
  const std::string blank(visible_length_, ' ');
  std::fputs(("\r" + blank + "\r").c_str(), stderr);
  std::fflush(stderr);
  visible_length_ = 0;
}

}  // namespace orvandel::cli
