#include "cli/pattern_finder.h"

#include <chrono>
#include <utility>

#include <fmt/format.h>

#include "cli/output_file.h"
#include "cli/tool_error.h"
#include "contours/crawler_adapter.h"
#include "evaluation/number_text.h"
#include "search/knowledge_file.h"

namespace orvandel::cli {

using evaluation::Fixed;

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
                        "straight edges, or see fainter ones with a lower --edge-threshold",
                        num_contours));
}

double MillisecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
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

const char* StatusWord(FindStatus status) {
  switch (status) {
    case FindStatus::kFound:
      return "found";
    case FindStatus::kBelowAcceptScore:
      return "below_accept_score";
    case FindStatus::kNoContours:
      return "no_contours";
    case FindStatus::kNoLines:
      return "no_lines";
    case FindStatus::kTimedOut:
      return "timed_out";
  }
  return "unknown";
}

std::string Describe(const PatternFacts& facts) {
  return fmt::format(
      "{} x {} pixels, {} contours of {} points, {} straight edges, reference point "
      "({}, {}), edge threshold {}",
      facts.width, facts.height, facts.num_contours, facts.num_points, facts.num_lines,
      Fixed(facts.reference.x, 2), Fixed(facts.reference.y, 2), facts.edge_threshold);
}

std::string KnowledgeFile(const std::string& name) {
  return name + "_qrsi.bmp";
}

void PatternFinder::Train(ImageFile pattern) {
  pattern_ = std::move(pattern);
  crawl_ = WithThreshold(options_.crawl, pattern_);
  pattern_contours_ = FindContours(pattern_, crawl_, /*raw=*/false);
  LearntSegments learnt = LearnSegmentModel(ViewOf(FieldsOf(pattern_contours_)));
  model_ = std::move(learnt.model);
  if (learnt.outcome == LearningOutcome::kNoContour) ThrowNoContour(pattern_.path, crawl_);
  if (learnt.outcome == LearningOutcome::kNoSegment)
    ThrowNoLine(pattern_.path, ctd_contour_count(pattern_contours_.get()));
}

void PatternFinder::Load(const std::string& name) {
  Train(ReadImage(KnowledgeFile(name)));
}

void PatternFinder::Save(const std::string& name) const {
  if (!WriteKnowledge(pattern_.image.get(), name.c_str())) ThrowNotWritten(KnowledgeFile(name));
}

FindResult PatternFinder::Find(ImagePtr scene) {
  const auto start = std::chrono::steady_clock::now();
  const SegmentMatch match =
      FindInImage(model_.View(), RowsOf(*scene), {crawl_, {}}, options_.search, scene_edges_);
  FindResult result;
  result.time_ms = MillisecondsSince(start);
  result.status = StatusOf(match, options_);
  result.score = match.score;
  result.scene_from_pattern = match.scene_from_pattern;
  result.scene_from_pattern.angle = NormalizedAngle(match.scene_from_pattern.angle);
  return result;
}

PatternFacts PatternFinder::Facts() const {
  PatternFacts facts;
  facts.width = pattern_.image->width;
  facts.height = pattern_.image->height;
  facts.num_contours = ctd_contour_count(pattern_contours_.get());
  facts.num_points = ctd_point_count(pattern_contours_.get());
  facts.num_lines = static_cast<int>(model_.segments.size());
  facts.edge_threshold = crawl_.edge_threshold;
  facts.reference = model_.reference;
  return facts;
}

}  // namespace orvandel::cli
