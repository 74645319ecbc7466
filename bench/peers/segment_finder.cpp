#include "bench/peers/peers.h"
#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "evaluation/classic_pixels.h"
#include "evaluation/file_error.h"
#include "orvandel/classic/qrsis.h"

namespace orvandel::bench {
namespace {

/// By way of the classic face, with default parameters.
class SegmentFinder : public evaluation::Finder {
 public:
  SegmentFinder() {
    search_.Initialize();
    search_.SetMinMaxScale(kLeastScale, kMostScale);
  }

  evaluation::PatternFrame Learn(const evaluation::ImageFile& pattern) override {
    if (search_.TrainIt(image_.Restored(*pattern.image)) != 0)
      throw evaluation::FileError(pattern.path, "no straight edge to learn");
    Point reference;
    search_.GetPatternRef(&reference.x, &reference.y);
    return {pattern.image->width, pattern.image->height, evaluation::FromClassicPixels(reference)};
  }

  evaluation::Finding Find(const evaluation::ImageFile& scene) override {
    tImage* const image = image_.Restored(*scene.image);
    evaluation::Finding finding;
    int status = 0;
    finding.time_ms = 1e3 * SecondsOf([&] { status = search_.LookForIt(image); });
    finding.status = "not_found";
    if (status != 0) return finding;
    Similarity pose;
    double score = 0;
    search_.GetFoundPattData(&pose.x, &pose.y, &pose.angle, &pose.scale, &score);
    constexpr double kAcceptScore = 80;
    const bool is_accepted = score >= kAcceptScore;
    if (is_accepted) finding.status = "found";
    finding.matches.push_back({evaluation::FromClassicPixels(pose), score, is_accepted});
    return finding;
  }

 private:
  QRSIS search_;
  WorkingCopy image_;
};

}  // namespace

std::unique_ptr<evaluation::Finder> MakeSegmentFinder() {
  return std::make_unique<SegmentFinder>();
}

}  // namespace orvandel::bench
