#include "cli/segment_finder.h"

#include <utility>

#include <fmt/format.h>

#include "cli/output_file.h"
#include "cli/stopwatch.h"
#include "cli/tool_error.h"
#include "contours/crawler_adapter.h"
#include "evaluation/classic_pixels.h"
#include "search/knowledge_file.h"

namespace orvandel::cli {
namespace {

[[noreturn]] void ThrowNoContour(const std::string& path, const CrawlOptions& options) {
  throw FileError(
      path, fmt::format("no contour in the pattern: no edge of magnitude {} or more "
                        "(--edge-threshold) makes a contour of {} to {} points (--min-contour, "
                        "--max-contour); lower the threshold or the smallest contour, or take a "
                        "picture with more contrast",
                        options.edge_threshold, options.min_size, options.max_size));
}

[[noreturn]] void ThrowNoLine(const std::string& path, int num_contours) {
  throw FileError(
      path, fmt::format("no straight edge in the pattern: the search starts from straight edges "
                        "and the pattern's {} contours have none long enough; take a pattern with "
                        "straight edges, see fainter ones with a lower --edge-threshold, or take "
                        "the shape engine (without --engine), which needs none",
                        num_contours));
}

FindStatus StatusOf(const SegmentMatch& match, const SearchOptions& options) {
  switch (match.outcome) {
    case SegmentSearchOutcome::kNoContour:
      return FindStatus::kNoContours;
    case SegmentSearchOutcome::kNoSegment:
      return FindStatus::kNoLines;
    case SegmentSearchOutcome::kOutOfTime:
      return FindStatus::kTimedOut;
    case SegmentSearchOutcome::kPoseDetermined:
      break;
  }
  // No hypothesis scored above 0, so there is no pose to tell either.
  if (match.scene_from_pattern.scale == 0) return FindStatus::kTimedOut;
  return IsAccepted(match.score, options) ? FindStatus::kFound : FindStatus::kBelowAcceptScore;
}

}  // namespace

void SegmentFinder::Train(ImageFile pattern) {
  const Stopwatch watch;
  pattern_ = std::move(pattern);
  crawl_ = WithThreshold(options_.crawl, pattern_);
  pattern_contours_ = FindContours(pattern_, crawl_, /*raw=*/false);
  LearntSegments learnt = LearnSegmentModel(ViewOf(FieldsOf(pattern_contours_)));
  model_ = std::move(learnt.model);
  if (learnt.outcome == LearningOutcome::kNoContour) ThrowNoContour(pattern_.path, crawl_);
  if (learnt.outcome == LearningOutcome::kNoSegment)
    ThrowNoLine(pattern_.path, ctd_contour_count(pattern_contours_.get()));
  learning_ms_ = watch.Milliseconds();
}

void SegmentFinder::Save(const std::string& name) const {
  if (!WriteKnowledge(pattern_.image.get(), name.c_str())) ThrowNotWritten(KnowledgeFile(name));
}

FindResult SegmentFinder::Search(const ImageFile& scene, int) {
  const ImagePtr overwritten = CopyOf(scene);
  const Stopwatch watch;
  const SegmentMatch match =
      FindInImage(model_.View(), RowsOf(*overwritten), {crawl_, {}}, options_.search, scene_edges_);
  FindResult result;
  result.time_ms = watch.Milliseconds();
  result.status = StatusOf(match, options_);
  result.timed_out = result.time_ms >= options_.search.timeout_us / 1000.0 && !result.IsFound();
  if (!result.IsFound() && result.status != FindStatus::kBelowAcceptScore) return result;
  Similarity pose = evaluation::FromClassicPixels(match.scene_from_pattern);
  pose.angle = NormalizedAngle(pose.angle);
  result.matches.push_back({pose, match.score, result.IsFound()});
  return result;
}

PatternFacts SegmentFinder::Facts() const {
  SegmentFacts learnt;
  learnt.num_contours = ctd_contour_count(pattern_contours_.get());
  learnt.num_points = ctd_point_count(pattern_contours_.get());
  learnt.num_lines = static_cast<int>(model_.segments.size());
  learnt.edge_threshold = crawl_.edge_threshold;
  return {pattern_.image->width, pattern_.image->height,
          evaluation::FromClassicPixels(model_.reference), learning_ms_, learnt};
}

std::vector<Polyline> SegmentFinder::Outline() const {
  std::vector<Polyline> contours = PolylinesOf(pattern_contours_);
  for (Polyline& contour : contours) {
    for (Point& p : contour.points)
      p = p - model_.reference;
  }
  return contours;
}

std::string KnowledgeFile(const std::string& name) {
  return name + "_qrsi.bmp";
}

}  // namespace orvandel::cli
