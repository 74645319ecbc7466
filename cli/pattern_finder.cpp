#include "cli/pattern_finder.h"

#include <fmt/format.h>

#include "cli/segment_finder.h"
#include "cli/shape_finder.h"
#include "evaluation/number_text.h"

namespace orvandel::cli {

using evaluation::Fixed;

namespace {

std::string DescribeLearnt(const SegmentFacts& facts) {
  return fmt::format("{} contours of {} points, {} straight edges, edge threshold {}",
                     facts.num_contours, facts.num_points, facts.num_lines, facts.edge_threshold);
}

std::string DescribeLearnt(const ShapeFacts& facts) {
  return fmt::format("{} edge points, {} levels down to scale {}", NumEdgePoints(facts),
                     facts.levels.size(), Fixed(SmallestScale(facts), 3));
}

}  // namespace

std::string Describe(const PatternFacts& facts) {
  const std::string learnt =
      std::visit([](const auto& of_engine) { return DescribeLearnt(of_engine); }, facts.learnt);
  return fmt::format("{} x {} pixels, {}, reference point ({}, {}), learnt in {} ms", facts.width,
                     facts.height, learnt, Fixed(facts.reference.x, 2), Fixed(facts.reference.y, 2),
                     Fixed(facts.learning_ms, 1));
}

int NumEdgePoints(const ShapeFacts& facts) {
  return facts.levels.front().num_all;
}

double SmallestScale(const ShapeFacts& facts) {
  return 1 / facts.levels.back().factor;
}

evaluation::PatternFrame PatternFinder::Learn(const ImageFile& pattern) {
  Train(
      {pattern.path, CopyOf(pattern), pattern.channels, pattern.bits_per_channel, pattern.grey16});
  const PatternFacts facts = Facts();
  return {facts.width, facts.height, facts.reference};
}

evaluation::Finding PatternFinder::FindSeveral(const ImageFile& scene, int max_matches) {
  constexpr int kDecimalsOfShares = 5;
  last_result_ = Search(scene, max_matches);
  evaluation::Finding finding;
  finding.status = StatusWord(last_result_.status);
  finding.time_ms = last_result_.time_ms;
  finding.timed_out = last_result_.timed_out;
  for (const FoundMatch& match : last_result_.matches) {
    finding.matches.push_back({match.scene_from_pattern, match.score, match.is_accepted});
    if (!match.details) continue;
    finding.matches.back().covariance = match.details->covariance;
    finding.score_decimals = kDecimalsOfShares;
  }
  return finding;
}

std::unique_ptr<PatternFinder> MakePatternFinder(const SearchOptions& options) {
  if (options.engine == Engine::kSegments) return std::make_unique<SegmentFinder>(options);
  return std::make_unique<ShapeFinder>(options);
}

}  // namespace orvandel::cli
