#include "platform/tick_counter.h"

#include <atomic>

#if defined(_WIN32)
#include "platform/windows_tick_counter.h"
#else
#include <chrono>
#endif

namespace orvandel {
namespace {

#if !defined(_WIN32)
/// The monotonic clock, in nanoseconds; its rate is known, so nothing is measured.
class MonotonicTickCounter final : public TickCounter {
 public:
  std::uint64_t Read() override {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
  }
  std::uint64_t TicksPerSecond() override { return 1'000'000'000; }
};
#endif

TickCounter& OwnTickCounter() {
#if defined(_WIN32)
  static WindowsTickCounter counter;
#else
  static MonotonicTickCounter counter;
#endif
  return counter;
}

std::atomic<TickCounter*> replacement{nullptr};

}  // namespace

TickCounter& ProcessTickCounter() {
  TickCounter* counter = replacement.load();
  return counter != nullptr ? *counter : OwnTickCounter();
}

void ReplaceProcessTickCounter(TickCounter* counter) {
  replacement.store(counter);
}

}  // namespace orvandel
