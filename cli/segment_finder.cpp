#include "cli/segment_finder.h"

#include "evaluation/classic_pixels.h"

namespace orvandel::cli {

evaluation::PatternFrame SegmentFinder::Learn(const ImageFile& pattern) {
  finder_.reset();  // its last scene's edge data, hundreds of megabytes for a large one
  auto finder = std::make_unique<PatternFinder>(options_);
  finder->Train(pattern);
  finder_ = std::move(finder);
  const PatternFacts facts = finder_->Facts();
  return {facts.width, facts.height, evaluation::FromClassicPixels(facts.reference)};
}

evaluation::Finding SegmentFinder::Find(const ImageFile& scene) {
  last_result_ = finder_->Find(CopyOf(scene));
  evaluation::Finding finding;
  finding.status = StatusWord(last_result_.status);
  finding.time_ms = last_result_.time_ms;
  if (last_result_.HasPose()) {
    finding.matches.push_back({evaluation::FromClassicPixels(last_result_.scene_from_pattern),
                               last_result_.score, last_result_.IsFound()});
  }
  return finding;
}

}  // namespace orvandel::cli
