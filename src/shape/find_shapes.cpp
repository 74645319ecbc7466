#include "shape/find_shapes.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <new>
#include <vector>

#include "shape/search/coarse_search.h"
#include "shape/search/descent.h"
#include "shape/search/grids.h"
#include "shape/search/overlap.h"
#include "shape/search/response_maps.h"
#include "shape/search/scene_levels.h"
#include "shape/search/scoring.h"
#include "shape/search/tracking.h"

namespace orvandel::shape {

struct Workspace::Buffers {
  SceneLevels scene;
  std::vector<Grid> grids;
  ResponseMaps maps;
  CoarseBuffers coarse;
  std::vector<Candidate> candidates;
  std::vector<std::size_t> candidate_ends;
  TrackingBuffers tracking;
  DescentBuffers descent;
  ScoringBuffers scoring;
  OverlapBuffers overlap;
  std::vector<Tracked> arrived;
  std::vector<Match> found;
  std::vector<Match> matches;
  std::vector<Point> hulls;
  std::vector<Point> hull;
};

Workspace::Workspace() : buffers_(std::make_unique<Buffers>()) {}
Workspace::Workspace(Workspace&&) noexcept = default;
Workspace& Workspace::operator=(Workspace&&) noexcept = default;
Workspace::~Workspace() = default;

namespace {

/// Exhaustive search: no candidate has less than this score ...
constexpr float kLeastCoarseScore = 0.30F;
/// ... or than this share of the best. Several instances are not all as good as the best.
constexpr float kCoarseShare = 0.65F;
constexpr float kCoarseShareSeveral = 0.75F * kCoarseShare;
constexpr double kTrackedShare = 0.45;
constexpr double kTrackedShareSeveral = 0.6 * kTrackedShare;

constexpr std::size_t kMaxHits = 3000;
constexpr std::size_t kMaxCandidates = 200;
constexpr std::size_t kHitsPerWanted = 100;
constexpr std::size_t kCandidatesPerWanted = 10;
/// All: as many as a picture may well hold.
constexpr std::size_t kMany = 200;

/// Where the best score reaches this, no other polarity is tried.
constexpr double kGoodScore = 0.5;

/// A further polarity's candidates must reach this share of the best ones before, and are half as many.
constexpr float kFurtherShare = 0.85F;

class Stopwatch {
 public:
  double MicrosecondsSinceLast() {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<double, std::micro> passed = now - last_;
    last_ = now;
    return passed.count();
  }

 private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

std::string_view MistakeIn(const FindOptions& options) {
  const auto is_finite = [](double value) { return std::isfinite(value); };
  if (!is_finite(options.angle_start))
    return "The start of the angle range is not a finite number.";
  if (!(options.angle_extent >= 0.0 && is_finite(options.angle_extent)))
    return "The extent of the angle range must be 0 or more.";
  if (!(options.min_scale > 0.0 && is_finite(options.max_scale)))
    return "Scales must be above 0 and finite.";
  if (!(options.min_scale <= options.max_scale)) return "The smallest scale exceeds the largest.";
  if (!(options.min_score >= 0.0 && options.min_score <= 1.0))
    return "The least score must lie between 0 and 1.";
  if (options.max_matches < 0) return "The number of matches must not be negative.";
  if (!(options.max_overlap >= 0.0 && options.max_overlap <= 1.0))
    return "The overlap limit must lie between 0 and 1.";
  if (options.time_budget_us < 0) return "The time budget must not be negative.";
  if (options.num_threads < 0) return "The number of threads must not be negative.";
  return {};
}

bool IsEmpty(const ImageView& image) {
  return std::visit([](const auto& view) { return view.IsEmpty(); }, image);
}

/// One search of a scene, stage by stage.
class ShapeSearch {
 public:
  ShapeSearch(const ShapeModel& model, const ImageView& image, const FindOptions& options,
              Workspace::Buffers& buffers, FindResult& result)
      : model_(model), image_(image), options_(options), buffers_(buffers), result_(result) {
    descent_.angle_start = options.angle_start;
    descent_.angle_extent = std::min(options.angle_extent, kTwoPi);
    descent_.min_scale = options.min_scale;
    descent_.max_scale = options.max_scale;
    descent_.num_wanted =
        options.max_matches == 0 ? kMany : static_cast<std::size_t>(options.max_matches);
    descent_.share_of_best = descent_.num_wanted == 1 ? kTrackedShare : kTrackedShareSeveral;
  }

  void Run() {
    PrepareScene();
    buffers_.found.clear();
    float best_candidate = 0.0F;
    for (const EdgeSign sign : SignsToTry()) {
      if (BestScore() >= kGoodScore) break;
      descent_.sign = sign;
      best_candidate = FindCandidates(best_candidate);
      TrackCandidates();
      ScoreArrived();
    }
    RemoveOverlaps();
    result_.matches = buffers_.matches;
  }

 private:
  std::vector<EdgeSign> SignsToTry() const {
    switch (options_.polarity) {
      case Polarity::kSame:
        return {EdgeSign::kSame};
      case Polarity::kReversed:
        return {EdgeSign::kReversed};
      case Polarity::kEither:
        return {EdgeSign::kSame, EdgeSign::kReversed};
      default:
        return {EdgeSign::kSame, EdgeSign::kEither};
    }
  }

  double BestScore() const {
    double best = 0.0;
    for (const Match& match : buffers_.found)
      best = std::max(best, match.score);
    return best;
  }

  void PrepareScene() {
    ChooseGrids(std::sqrt(model_.Width() * model_.Height()), options_.min_scale, options_.max_scale,
                buffers_.grids);
    buffers_.scene.Build(image_, buffers_.grids.front().level + 1);
    // A scene too small for a grid has no pattern of its scales in it.
    std::erase_if(buffers_.grids,
                  [this](const Grid& grid) { return grid.level >= buffers_.scene.NumLevels(); });
    result_.times_us.pyramid += watch_.MicrosecondsSinceLast();
  }

  /// @param best_before  best score of the polarities tried before, 0 at first
  /// @return             best score of a candidate
  float FindCandidates(float best_before) {
    buffers_.candidates.clear();
    buffers_.candidate_ends.clear();
    const bool is_first = best_before == 0.0F;
    float best_score = kFurtherShare * best_before;
    CoarseLimits limits;
    limits.least_score = kLeastCoarseScore;
    limits.share_of_best = descent_.num_wanted == 1 ? kCoarseShare : kCoarseShareSeveral;
    limits.max_hits = std::max(kMaxHits, kHitsPerWanted * descent_.num_wanted) / (is_first ? 1 : 2);
    limits.max_candidates =
        std::max(kMaxCandidates, kCandidatesPerWanted * descent_.num_wanted) / (is_first ? 1 : 2);
    for (const Grid& grid : buffers_.grids) {
      BuildMaps(grid);
      result_.times_us.response_maps += watch_.MicrosecondsSinceLast();
      const CoarseRange range = {grid.level, descent_.angle_start, descent_.angle_extent,
                                 grid.min_scale, grid.max_scale};
      SearchGrid(model_, buffers_.maps, grid.level > 0, range, limits, best_score, buffers_.coarse,
                 buffers_.candidates);
      buffers_.candidate_ends.push_back(buffers_.candidates.size());
      result_.times_us.coarse_search += watch_.MicrosecondsSinceLast();
    }
    return best_score;
  }

  void BuildMaps(const Grid& grid) {
    const int level = grid.GradientLevel();
    const GradientPlane& gradients = buffers_.scene.Gradients(level);
    const bool is_pooled = grid.level > 0;
    const std::int32_t width = is_pooled ? gradients.width / 2 : gradients.width;
    const std::int32_t height = is_pooled ? gradients.height / 2 : gradients.height;
    // A level's coarse points may reach a little farther than the finest ones.
    const double pixels = static_cast<double>(1 << grid.level);
    const auto frame = static_cast<std::int32_t>(1.1 * model_.radius * grid.max_scale / pixels) + 4;
    buffers_.maps.Build(buffers_.scene.Edges(level), is_pooled, width, height, frame,
                        descent_.sign);
  }

  void TrackCandidates() {
    buffers_.arrived.clear();
    if (buffers_.grids.empty()) return;
    buffers_.descent.active.clear();
    Descent descent(model_, buffers_.scene, descent_, buffers_.tracking, buffers_.descent);
    std::size_t grid = 0;
    for (int level = buffers_.grids.front().GradientLevel(); level >= 0; --level) {
      for (; grid < buffers_.grids.size() && buffers_.grids[grid].GradientLevel() == level; ++grid)
        descent.Enter(CandidatesOf(grid), level);
      if (!buffers_.descent.active.empty()) descent.FitLevel(level, buffers_.arrived);
    }
    result_.times_us.tracking += watch_.MicrosecondsSinceLast();
  }

  std::span<const Candidate> CandidatesOf(std::size_t grid) const {
    const std::size_t begin = grid == 0 ? 0 : buffers_.candidate_ends[grid - 1];
    return std::span(buffers_.candidates).subspan(begin, buffers_.candidate_ends[grid] - begin);
  }

  void ScoreArrived() {
    const double chance = model_.ChanceOf(options_.min_scale, options_.max_scale);
    for (Tracked& tracked : buffers_.arrived) {
      FitFinally(model_, buffers_.scene, descent_, buffers_.tracking, tracked);
      const int level = tracked.level;
      const LevelPose pose = OnLevel(tracked.pose, level);
      const GradientPlane& gradients = buffers_.scene.Gradients(level);
      const EdgePoints& points =
          model_.LevelOf(static_cast<double>(1 << level) / tracked.pose.scale).all;
      TrackingStep step = MeasuringStep(buffers_.scene, level, descent_.sign);
      const PoseScore score =
          ScorePose(points, gradients, step, buffers_.tracking, buffers_.scoring, pose);
      Match match;
      match.scene_from_pattern = {tracked.pose.x, tracked.pose.y,
                                  NormalizedAngle(tracked.pose.angle), tracked.pose.scale};
      match.score = ScoreAboveChance(score.raw, chance);
      match.coverage = score.coverage;
      match.fit_error = score.rms * static_cast<double>(1 << level);
      match.contrast = score.contrast;
      match.is_reversed = score.is_reversed;
      match.share_outside = 1.0 - score.visible;
      step.holds_scale = options_.min_scale == options_.max_scale;
      step.holds_angle = options_.angle_extent == 0.0;
      match.covariance = CovarianceAt(points, gradients, step, level, buffers_.tracking, pose);
      buffers_.found.push_back(match);
    }
    result_.times_us.refinement += watch_.MicrosecondsSinceLast();
  }

  /// Best first; drops what overlaps a better one by too much, and what is below the least score.
  void RemoveOverlaps() {
    std::stable_sort(buffers_.found.begin(), buffers_.found.end(),
                     [](const Match& a, const Match& b) { return a.score > b.score; });
    buffers_.matches.clear();
    buffers_.hulls.clear();
    const auto most = options_.max_matches == 0 ? buffers_.found.size()
                                                : static_cast<std::size_t>(options_.max_matches);
    for (const Match& match : buffers_.found) {
      if (buffers_.matches.size() >= most || match.score < options_.min_score) break;
      if (!(match.score > 0.0) || OverlapsBetter(match)) continue;
      Match reported = match;
      const Point at = match.scene_from_pattern * model_.origin;
      reported.scene_from_pattern.x = at.x;
      reported.scene_from_pattern.y = at.y;
      buffers_.matches.push_back(reported);
      buffers_.hulls.insert(buffers_.hulls.end(), buffers_.hull.begin(), buffers_.hull.end());
    }
  }

  bool OverlapsBetter(const Match& match) {
    const SimilarityMap map(match.scene_from_pattern);
    buffers_.hull.clear();
    for (const Point p : model_.hull)
      buffers_.hull.push_back(map * p);
    const double area = AreaOf(buffers_.hull);
    const std::size_t corners = model_.hull.size();
    for (std::size_t i = 0; i < buffers_.matches.size(); ++i) {
      const auto other = std::span(buffers_.hulls).subspan(i * corners, corners);
      const double shared = SharedArea(buffers_.hull, other, buffers_.overlap);
      if (shared > options_.max_overlap * std::min(area, AreaOf(other))) return true;
    }
    return false;
  }

  const ShapeModel& model_;
  const ImageView& image_;
  const FindOptions& options_;
  Workspace::Buffers& buffers_;
  FindResult& result_;
  DescentOptions descent_;
  Stopwatch watch_;
};

}  // namespace

FindResult FindShapes(const ShapeModel& model, const ImageView& scene, const FindOptions& options,
                      Workspace& workspace) {
  FindResult result;
  result.message = MistakeIn(options);
  if (!result.message.empty()) {
    result.status = FindStatus::kBadOptions;
    return result;
  }
  if (IsEmpty(scene)) {
    result.status = FindStatus::kEmptyImage;
    result.message = "The scene has no pixels.";
    return result;
  }
  Stopwatch watch;
  ShapeSearch(model, scene, options, workspace.buffers(), result).Run();
  result.times_us.total = watch.MicrosecondsSinceLast();
  return result;
}

}  // namespace orvandel::shape
