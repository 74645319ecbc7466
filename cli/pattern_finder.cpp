#include "cli/pattern_finder.h"

#include <chrono>

#include <fmt/format.h>

#include "cli/output_file.h"
#include "cli/tool_error.h"
#include "evaluation/number_text.h"
#include "orvandel/classic/crawler.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/line_extracter.h"

namespace orvandel::cli {

using evaluation::Fixed;

namespace {

// What `TrainIt` and `LookForIt` return.
constexpr int kNoContours = 2;
constexpr int kNoLines = 4;

[[noreturn]] void ThrowNoContour(const std::string& path, const ContourOptions& options,
                                 int edge_threshold) {
  throw FileError(
      path, fmt::format("no contour in the pattern: no edge of magnitude {} or more "
                        "(--edge-threshold) makes a contour of {} to {} points (--min-contour, "
                        "--max-contour); lower the threshold or the smallest contour, or take a "
                        "picture with more contrast",
                        edge_threshold, options.min_contour, options.max_contour));
}

[[noreturn]] void ThrowNoLine(const std::string& path, int num_contours) {
  throw FileError(
      path, fmt::format("no straight edge in the pattern: the search starts from straight edges "
                        "and the pattern's {} contours have none long enough; take a pattern with "
                        "straight edges, or see fainter ones with a lower --edge-threshold",
                        num_contours));
}

bool IsAllZero(const FindResult& result) {
  return result.scene_from_pattern == Similarity{0, 0, 0, 0} && result.score == 0;
}

double MillisecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

FindStatus StatusOf(int search_result, const FindResult& result, const SearchOptions& options) {
  if (search_result == kNoContours) return FindStatus::kNoContours;
  if (search_result == kNoLines) return FindStatus::kNoLines;
  if (IsAllZero(result)) return FindStatus::kTimedOut;
  return IsAccepted(result.score, options) ? FindStatus::kFound : FindStatus::kBelowAcceptScore;
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

PatternFinder::PatternFinder(const SearchOptions& options) : options_(options) {
  const ContourOptions& contour = options_.contour;
  search_.Initialize();
  search_.SetParams(contour.edge_threshold, contour.min_contour, contour.max_contour,
                    options_.accept_score);
  search_.SetMinMaxScale(options_.min_scale, options_.max_scale);
  search_.SetTimeOutValue(options_.timeout_us);
}

void PatternFinder::Train(const ImageFile& pattern) {
  const ImagePtr used_up = CopyOf(pattern);
  search_.TrainIt(used_up.get());
  CheckTrained(pattern.path);
}

void PatternFinder::Load(const std::string& name) {
  const std::string path = KnowledgeFile(name);
  ReadImage(path);  // says what is wrong with a file that the library would merely refuse
  if (!search_.LoadKnowledge(name.c_str()))
    throw FileError(path, "not a knowledge file as `orvandel train` writes it");
  CheckTrained(path);
}

void PatternFinder::Save(const std::string& name) {
  if (!search_.SaveKnowledge(name.c_str())) ThrowNotWritten(KnowledgeFile(name));
}

// A loaded pattern tells nothing of how its training went, so what was learnt is looked at.
void PatternFinder::CheckTrained(const std::string& path) {
  const PatternFacts facts = Facts();
  if (facts.num_contours == 0) ThrowNoContour(path, options_.contour, facts.edge_threshold);
  if (facts.num_lines == 0) ThrowNoLine(path, facts.num_contours);
}

FindResult PatternFinder::Find(ImagePtr scene) {
  const auto start = std::chrono::steady_clock::now();
  const int search_result = search_.LookForIt(scene.get());
  FindResult result;
  result.time_ms = MillisecondsSince(start);
  Similarity& pose = result.scene_from_pattern;
  search_.GetFoundPattData(&pose.x, &pose.y, &pose.angle, &pose.scale, &result.score);
  pose.angle = NormalizedAngle(pose.angle);
  result.status = StatusOf(search_result, result, options_);
  return result;
}

Point PatternFinder::Reference() {
  Point reference;
  search_.GetPatternRef(&reference.x, &reference.y);
  return reference;
}

PatternFacts PatternFinder::Facts() {
  PatternFacts facts;
  facts.width = search_.GetPatternDx();
  facts.height = search_.GetPatternDy();
  facts.num_contours = ctd_contour_count(Contours());
  facts.num_points = ctd_point_count(Contours());
  facts.edge_threshold = static_cast<const CCrawler*>(Contours())->edge_threshold;
  facts.reference = Reference();
  // Repeating the extraction of the training leaves the contours' flags as that one set them.
  CLineExtracter lines;
  facts.num_lines = lines.Extract(Contours());
  return facts;
}

}  // namespace orvandel::cli
