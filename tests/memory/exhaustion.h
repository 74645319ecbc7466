#pragma once

#include <new>

#include <gtest/gtest.h>

#include "tests/memory/failing_allocations.h"

namespace orvandel::test {

/// How an operation ended while memory ran out.
enum class Ending { kReturned, kThrew };

/// One operation with one failing allocation.
class Trial {
 public:
  Trial(long index, Failure failure) : index_(index), failure_(failure) {}

  /// Runs the operation, once a trial. Only the standard allocation exceptions may leave it.
  template <typename Operation>
  Ending Fail(const Operation& operation) {
    const FailingAllocation failing(index_, failure_);
    Ending ending = Ending::kReturned;
    try {
      operation();
    } catch (const std::bad_alloc&) {
      ending = Ending::kThrew;
    }
    has_failed_ = FailingAllocation::HasHappened();
    return ending;
  }

  /// Whether the operation asked for so many allocations that one failed.
  bool HasFailed() const { return has_failed_; }

  /// Blocks that may be lost when the trial ends; otherwise none.
  void MayLose(long blocks) { may_lose_ = blocks; }
  long MayLose() const { return may_lose_; }

 private:
  long index_;
  Failure failure_;
  bool has_failed_ = false;
  long may_lose_ = 0;
};

/// For operations of many allocations that take long under the address sanitizer: there all of the first ones fail, and
/// of the others one in so many.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr long kManyAllocations = 9;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr long kManyAllocations = 9;
#else
inline constexpr long kManyAllocations = 1;
#endif
#else
inline constexpr long kManyAllocations = 1;
#endif

/// Lets every allocation that an operation makes fail in turn, alone and with all that follow it.
///
/// @param run   takes a Trial&: prepares, lets the operation fail, and checks what came of it and
///              that it works afterwards. What it holds at its end counts as lost.
/// @param step  1, or kManyAllocations.
template <typename Run>
void FailEachAllocation(const Run& run, long step = 1) {
  constexpr long kNumFirst = 20;
  for (const Failure failure : {Failure::kOnce, Failure::kForGood}) {
    long index = 0;
    for (bool has_failed = true; has_failed; index += index < kNumFirst ? 1 : step) {
      SCOPED_TRACE(testing::Message() << "allocation " << index
                                      << (failure == Failure::kOnce ? "" : " and all after it"));
      const long before = NumLiveBlocks();
      Trial trial(index, failure);
      run(trial);
      if (testing::Test::HasFailure()) return;
      ASSERT_LE(NumLiveBlocks() - before, trial.MayLose());
      has_failed = trial.HasFailed();
      ASSERT_TRUE(has_failed || index > 0);
    }
  }
}

}  // namespace orvandel::test
