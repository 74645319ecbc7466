#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <utility>

#include "platform/tick_counter.h"

namespace orvandel::test {

/// A counter in the process's place for as long as it lives: its values follow a script.
class ScriptedCounter : public TickCounter {
 public:
  using Script = std::function<std::uint64_t(int read)>;  ///< value of read 0, 1, 2, ...

  explicit ScriptedCounter(Script script, std::uint64_t ticks_per_second = 1000000)
      : script_(std::move(script)), ticks_per_second_(ticks_per_second) {
    ReplaceProcessTickCounter(this);
  }
  ~ScriptedCounter() override { ReplaceProcessTickCounter(nullptr); }
  ScriptedCounter(const ScriptedCounter&) = delete;
  ScriptedCounter& operator=(const ScriptedCounter&) = delete;

  std::uint64_t Read() override { return script_(num_reads_++); }
  std::uint64_t TicksPerSecond() override { return ticks_per_second_; }

 private:
  Script script_;
  std::uint64_t ticks_per_second_;
  int num_reads_ = 0;
};

/// Time stands still.
inline ScriptedCounter::Script FrozenTime() {
  return [](int) { return std::uint64_t{0}; };
}

/// Time stands still up to a read, which comes after any deadline, as do all that follow. Read 0 is
/// the start of a search.
inline ScriptedCounter::Script TimeThatExpiresAtRead(int expiring_read) {
  return [expiring_read](int read) -> std::uint64_t {
    return read < expiring_read ? 0 : std::uint64_t{std::numeric_limits<std::int64_t>::max()};
  };
}

}  // namespace orvandel::test
