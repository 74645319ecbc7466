// One search object over very many frames. Its heap must be flat after the first hundred, which are as large as any
// that follow, and its results those of objects that never saw another frame.
//
// Usage: orvandel_soak FRAMES

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "orvandel/classic/qrsis.h"
#include "tests/endurance/frames.h"
#include "tests/endurance/memory_in_use.h"
#include "tests/support/images.h"
#include "tests/support/same_bits.h"

namespace orvandel::test {
namespace {

constexpr std::uint32_t kWarmUp = 100;
constexpr std::uint32_t kFramesBetweenReadings = 100;
constexpr std::uint32_t kFramesBetweenSamples = 50;

/// What arrays keep depends on the richest frame so far, and the first hundred need not hold it.
constexpr double kMostGrowth = 1.25;

struct Result {
  int status = 0;
  double numbers[5] = {};
};

bool AreSame(const Result& a, const Result& b) {
  if (a.status != b.status) return false;
  for (int k = 0; k < 5; ++k) {
    if (!AreSameBits(a.numbers[k], b.numbers[k])) return false;
  }
  return true;
}

bool Train(QRSIS& search) {
  search.Initialize();
  search.SetTimeOutValue(3999000);
  return search.TrainIt(EndurancePattern().get()) == 0;
}

Result LookFor(QRSIS& search, const ImagePtr& frame) {
  Result result;
  result.status = search.LookForIt(CopyOf(frame).get());
  double* r = result.numbers;
  search.GetFoundPattData(&r[0], &r[1], &r[2], &r[3], &r[4]);
  return result;
}

/// A search that ends before the scene is read leaves the score of a fresh object unset.
bool FreshObjectAgrees(const ImagePtr& frame, const Result& result) {
  QRSIS fresh;
  return Train(fresh) && AreSame(LookFor(fresh, frame), result);
}

class Soak {
 public:
  bool Run(std::uint32_t num_frames) {
    if (!Train(search_)) return Fail("the pattern cannot be trained", 0);
    const ImagePtr same_frame = FrameOf(4);
    for (std::uint32_t i = 1; i <= num_frames; ++i) {
      const ImagePtr frame = i <= kWarmUp ? LargestFrameOf(i) : FrameOf(i);
      const Result result = LookFor(search_, frame);
      if (i % kFramesBetweenSamples == 0) {
        ++num_samples_;
        if (!FreshObjectAgrees(frame, result)) return Fail("a fresh object finds another pose", i);
      }
      // After one and the same frame the object holds the same, but for what its arrays can hold.
      if (i % kFramesBetweenReadings == 0) {
        LookFor(search_, same_frame);
        if (!ReadMemory(i)) return false;
      }
    }
    Report(num_frames);
    return true;
  }

 private:
  static bool Fail(const char* what, std::uint32_t frame) {
    std::printf("Frame %u: %s\n", frame, what);
    return false;
  }

  bool ReadMemory(std::uint32_t frame) {
    last_heap_ = HeapInUse();
    last_resident_ = ResidentMemory();
    if (frame <= kWarmUp) {
      first_heap_ = last_heap_;
      first_resident_ = last_resident_;
    }
    const bool grew =
        last_heap_ && first_heap_ &&
        static_cast<double>(*last_heap_) > kMostGrowth * static_cast<double>(*first_heap_);
    return !grew || Fail("the heap in use has grown", frame);
  }

  void Report(std::uint32_t num_frames) const {
    std::printf("%u frames, %u of them equal to fresh objects' results\n", num_frames,
                num_samples_);
    PrintGrowth("heap in use", first_heap_, last_heap_);
    PrintGrowth("resident", first_resident_, last_resident_);
  }

  static void PrintGrowth(const char* what, std::optional<std::uint64_t> first,
                          std::optional<std::uint64_t> last) {
    if (!first || !last) return;
    std::printf("%s: %.1f kB after frame %u, %.1f kB at the end\n", what,
                static_cast<double>(*first) / 1024, kWarmUp, static_cast<double>(*last) / 1024);
  }

  QRSIS search_;
  std::uint32_t num_samples_ = 0;
  std::optional<std::uint64_t> first_heap_;
  std::optional<std::uint64_t> last_heap_;
  std::optional<std::uint64_t> first_resident_;
  std::optional<std::uint64_t> last_resident_;
};

}  // namespace
}  // namespace orvandel::test

int main(int argc, char** argv) {
  const long num_frames = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
  if (num_frames < 1 || num_frames > 1000000000) {
    std::fprintf(stderr, "Usage: orvandel_soak FRAMES\n");
    return 2;
  }
  return orvandel::test::Soak().Run(static_cast<std::uint32_t>(num_frames)) ? 0 : 1;
}
