#include "cli/segment_finder.h"

#include "evaluation/classic_pixels.h"

namespace orvandel::cli {

evaluation::PatternFrame SegmentFinder::Learn(const ImageFile& pattern) {
  finder_.Train({pattern.path, CopyOf(pattern), pattern.channels, pattern.bits_per_channel});
  const PatternFacts facts = finder_.Facts();
  return {facts.width, facts.height, evaluation::FromClassicPixels(facts.reference)};
}

evaluation::Finding SegmentFinder::Find(const ImageFile& scene) {
  last_result_ = finder_.Find(CopyOf(scene));
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
