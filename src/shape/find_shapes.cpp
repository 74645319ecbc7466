#include "shape/find_shapes.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <new>
#include <vector>

#include "shape/refinement/refine_pose.h"
#include "shape/search/coarse_search.h"
#include "shape/search/descent.h"
#include "shape/search/grids.h"
#include "shape/search/overlap.h"
#include "shape/search/response_maps.h"
#include "shape/search/scene_levels.h"
#include "shape/search/scoring.h"
#include "shape/search/tracking.h"

namespace orvandel::shape {

/// A pose that was tracked to its end, with its score.
struct Found {
  Tracked tracked;
  EdgeSign sign = EdgeSign::kSame;
  PoseScore raw;
  double score = 0.0;
};

struct Workspace::Buffers {
  WorkerTeam team;
  SceneLevels scene;
  std::vector<Grid> grids;
  std::vector<ResponseMaps> maps;  ///< of each grid
  CoarseBuffers coarse;
  std::vector<Candidate> candidates;
  std::vector<std::size_t> candidate_ends;
  DescentBuffers descent;
  ScoringBuffers scoring;
  OverlapBuffers overlap;
  RefinementWorkspace refinement;
  std::vector<Tracked> arrived;
  std::vector<Found> found;
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
/// All: as many as an image may well hold.
constexpr std::size_t kMany = 200;

/// Where the best score reaches this, no other polarity is tried.
constexpr double kGoodScore = 0.5;

/// The raw score is this many times the rank of the fine points at most: it is less, but for what other points tell.
constexpr double kRawPerRank = 1.6;

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

bool IsTooLarge(const ImageView& image) {
  return std::visit(
      [](const auto& view) {
        return view.width > kMaxImageSide || view.height > kMaxImageSide ||
               std::int64_t{view.width} * view.height > kMaxImagePixels;
      },
      image);
}

/// What is not moved at all stays where it is, however uncertain the rest may be.
double ProductWithInfinity(double a, double b) {
  return a == 0.0 || b == 0.0 ? 0.0 : a * b;
}

/// The covariance of a pose told of another point of the pattern, which lies `arm` away in the scene: as that turns and
/// grows, the point moves by (-arm.y, arm.x) a radian and by arm / scale.
std::array<double, 16> CarriedBy(Point arm, double scale,
                                 const std::array<double, 16>& covariance) {
  const double moves[2][4] = {{1.0, 0.0, -arm.y, arm.x / scale}, {0.0, 1.0, arm.x, arm.y / scale}};
  std::array<double, 16> half = covariance;
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 4; ++j) {
      half[4 * i + j] = 0.0;
      for (std::size_t k = 0; k < 4; ++k)
        half[4 * i + j] += ProductWithInfinity(moves[i][k], covariance[4 * k + j]);
    }
  }
  std::array<double, 16> carried = half;
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      carried[4 * i + j] = 0.0;
      for (std::size_t k = 0; k < 4; ++k)
        carried[4 * i + j] += ProductWithInfinity(half[4 * i + k], moves[j][k]);
    }
  }
  return carried;
}

/// One search of a scene, stage by stage.
class ShapeSearch {
 public:
  ShapeSearch(const ShapeModel& model, const ImageView& image, const FindOptions& options,
              Workspace::Buffers& buffers, FindResult& result)
      : model_(model),
        image_(image),
        options_(options),
        buffers_(buffers),
        result_(result),
        deadline_(options.time_budget_us) {
    buffers.team.Resize(
        std::min(static_cast<std::size_t>(std::max(options.num_threads, 1)), kWave));
    descent_.angle_start = options.angle_start;
    descent_.angle_extent = std::min(options.angle_extent, kTwoPi);
    descent_.min_scale = options.min_scale;
    descent_.max_scale = options.max_scale;
    descent_.num_wanted =
        options.max_matches == 0 ? kMany : static_cast<std::size_t>(options.max_matches);
    descent_.share_of_best = descent_.num_wanted == 1 ? kTrackedShare : kTrackedShareSeveral;
  }

  void Run() {
    FindPoses();
    RemoveOverlaps();
    RefineMatches();
  }

  /// All but what makes matches of them.
  void FindPoses() {
    PrepareScene();
    buffers_.found.clear();
    float best_candidate = 0.0F;
    for (const EdgeSign sign : SignsToTry()) {
      if (BestScore() >= kGoodScore || IsLate()) break;
      descent_.sign = sign;
      best_candidate = FindCandidates(best_candidate);
      TrackCandidates();
      ScoreArrived();
    }
  }

  double BestScore() const {
    double best = 0.0;
    for (const Found& found : buffers_.found)
      best = std::max(best, found.score);
    return best;
  }

 private:
  /// One after the other, as long as nothing good is found.
  std::span<const EdgeSign> SignsToTry() const {
    static constexpr EdgeSign kOnlySame[] = {EdgeSign::kSame};
    static constexpr EdgeSign kOnlyReversed[] = {EdgeSign::kReversed};
    static constexpr EdgeSign kOneOrTheOther[] = {EdgeSign::kSame, EdgeSign::kReversed};
    static constexpr EdgeSign kAnywhere[] = {EdgeSign::kSame, EdgeSign::kEither};
    switch (options_.polarity) {
      case Polarity::kSame:
        return kOnlySame;
      case Polarity::kReversed:
        return kOnlyReversed;
      case Polarity::kEither:
        return kOneOrTheOther;
      default:
        return kAnywhere;
    }
  }

  /// Whether the time is up; then what has been found until now is the result.
  bool IsLate() {
    result_.timed_out = result_.timed_out || deadline_.HasPassed();
    return result_.timed_out;
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
    if (buffers_.maps.size() < buffers_.grids.size()) buffers_.maps.resize(buffers_.grids.size());
    for (std::size_t i = 0; i < buffers_.grids.size(); ++i) {
      const Grid& grid = buffers_.grids[i];
      ResponseMaps& maps = buffers_.maps[i];
      BuildMaps(grid, maps);
      result_.times_us.response_maps += watch_.MicrosecondsSinceLast();
      const CoarseRange range = {grid.level, descent_.angle_start, descent_.angle_extent,
                                 grid.min_scale, grid.max_scale};
      SearchGrid(model_, maps, grid.level > 0, range, limits, deadline_, buffers_.team, best_score,
                 buffers_.coarse, buffers_.candidates);
      buffers_.candidate_ends.push_back(buffers_.candidates.size());
      result_.times_us.coarse_search += watch_.MicrosecondsSinceLast();
    }
    return best_score;
  }

  void BuildMaps(const Grid& grid, ResponseMaps& maps) {
    const int level = grid.GradientLevel();
    const GradientPlane& gradients = buffers_.scene.Gradients(level);
    const bool is_pooled = grid.level > 0;
    const std::int32_t width = is_pooled ? gradients.width / 2 : gradients.width;
    const std::int32_t height = is_pooled ? gradients.height / 2 : gradients.height;
    const auto pixels = static_cast<double>(1 << grid.level);
    const auto frame = static_cast<std::int32_t>(model_.reach * grid.max_scale / pixels) + 2;
    maps.Build(buffers_.scene.Edges(level), is_pooled, width, height, frame, descent_.sign);
  }

  void TrackCandidates() {
    buffers_.arrived.clear();
    if (buffers_.grids.empty()) return;
    buffers_.descent.active.clear();
    Descent descent(model_, buffers_.scene, descent_, buffers_.team, buffers_.descent);
    std::size_t grid = 0;
    for (int level = buffers_.grids.front().GradientLevel(); level >= 0 && !IsLate(); --level) {
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
    SortByRank(buffers_.arrived);
    double least_raw = RawScoreOf(std::min(options_.min_score, kGoodScore), chance);
    for (Tracked& tracked : buffers_.arrived) {
      if (IsLate()) break;
      FitFine(model_, buffers_.scene, descent_, buffers_.descent.tracking[0], tracked);
      if (kRawPerRank * tracked.fit.Rank() < least_raw) continue;
      FitFinally(model_, buffers_.scene, descent_, buffers_.descent.tracking[0], tracked);
      const int level = tracked.level;
      const EdgePoints& points = model_.LevelOf(PixelsOf(level) / tracked.pose.scale).all;
      const TrackingStep step = MeasuringStep(buffers_.scene, level, descent_.sign);
      Found found;
      found.tracked = tracked;
      found.sign = descent_.sign;
      found.raw =
          ScorePose(points, GradientsAt(model_, buffers_.scene, level, tracked.pose), step,
                    buffers_.descent.tracking[0], buffers_.scoring, OnLevel(tracked.pose, level));
      found.score = ScoreAboveChance(found.raw.raw, chance);
      buffers_.found.push_back(found);
      if (descent_.num_wanted == 1) least_raw = std::max(least_raw, found.raw.raw);
    }
    result_.times_us.scoring += watch_.MicrosecondsSinceLast();
  }

  /// Best first; drops what overlaps a better one by too much, and what is below the least score.
  void RemoveOverlaps() {
    std::sort(buffers_.found.begin(), buffers_.found.end(), [](const Found& a, const Found& b) {
      if (a.score != b.score) return a.score > b.score;
      if (a.tracked.pose.y != b.tracked.pose.y) return a.tracked.pose.y < b.tracked.pose.y;
      if (a.tracked.pose.x != b.tracked.pose.x) return a.tracked.pose.x < b.tracked.pose.x;
      return a.tracked.pose.angle < b.tracked.pose.angle;
    });
    buffers_.hulls.clear();
    const auto most = options_.max_matches == 0 ? buffers_.found.size()
                                                : static_cast<std::size_t>(options_.max_matches);
    std::size_t num_kept = 0;
    for (const Found& found : buffers_.found) {
      if (num_kept >= most || found.score < options_.min_score) break;
      if (!(found.score > 0.0) || OverlapsBetter(found.tracked.pose)) continue;
      buffers_.hulls.insert(buffers_.hulls.end(), buffers_.hull.begin(), buffers_.hull.end());
      buffers_.found[num_kept++] = found;
    }
    buffers_.found.resize(num_kept);
  }

  /// Leaves the outline of the pose in `hull`.
  bool OverlapsBetter(const Candidate& pose) {
    const SimilarityMap map(Similarity{pose.x, pose.y, pose.angle, pose.scale});
    buffers_.hull.clear();
    for (const Point p : model_.hull)
      buffers_.hull.push_back(map * p);
    const double area = AreaOf(buffers_.hull);
    const std::size_t corners = model_.hull.size();
    for (std::size_t first = 0; first < buffers_.hulls.size(); first += corners) {
      const auto other = std::span(buffers_.hulls).subspan(first, corners);
      const double shared = SharedArea(buffers_.hull, other, buffers_.overlap);
      if (shared > options_.max_overlap * std::min(area, AreaOf(other))) return true;
    }
    return false;
  }

  void RefineMatches() {
    buffers_.matches.clear();
    for (const Found& found : buffers_.found) {
      const RefinedPose refined = Refined(found);
      Match match;
      match.scene_from_pattern = refined.scene_from_pattern;
      // From the pattern's centre to the origin that was asked for.
      const Point origin = refined.scene_from_pattern * model_.origin;
      match.scene_from_pattern.x = origin.x;
      match.scene_from_pattern.y = origin.y;
      match.covariance =
          CarriedBy(origin - Point{refined.scene_from_pattern.x, refined.scene_from_pattern.y},
                    refined.scene_from_pattern.scale, refined.covariance);
      match.score = found.score;
      match.coverage = found.raw.coverage;
      match.fit_error = found.raw.rms * PixelsOf(found.tracked.level);
      match.contrast = found.raw.contrast;
      match.clutter = ClutterOf(found);
      match.is_reversed = found.raw.is_reversed;
      match.share_outside = 1.0 - found.raw.visible;
      buffers_.matches.push_back(match);
    }
    result_.matches = buffers_.matches;
    result_.times_us.refinement += watch_.MicrosecondsSinceLast();
  }

  /// Edge pixels within the outline beyond those that the pattern has, per edge point of the pattern, on the level where the
  /// search looked for it: its edges are there already.
  double ClutterOf(const Found& found) {
    const Candidate& pose = found.tracked.pose;
    std::size_t i = 0;
    while (i + 1 < buffers_.grids.size() && pose.scale < buffers_.grids[i].min_scale)
      ++i;
    const int level = buffers_.grids[i].GradientLevel();
    const SimilarityMap map(Similarity{pose.x, pose.y, pose.angle, pose.scale});
    buffers_.hull.clear();
    for (const Point p : model_.hull)
      buffers_.hull.push_back(map * p);
    Point low = buffers_.hull.front();
    Point high = low;
    for (const Point p : buffers_.hull) {
      low = {std::min(low.x, p.x), std::min(low.y, p.y)};
      high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    int num_inside = 0;
    for (const SceneEdge& edge : buffers_.scene.Edges(level)) {
      const Point at = {ToScene(edge.x, level), ToScene(edge.y, level)};
      // Most of a scene's edges lie far away.
      if (at.x < low.x || at.x > high.x || at.y < low.y || at.y > high.y) continue;
      num_inside += IsInside(buffers_.hull, at) ? 1 : 0;
    }
    const auto num_points =
        static_cast<double>(model_.LevelOf(PixelsOf(level) / pose.scale).all.size);
    return std::max(0.0, num_inside / num_points - found.raw.visible * found.raw.coverage);
  }

  struct RefinedPose {
    Similarity scene_from_pattern;  ///< of the pattern's centre
    std::array<double, 16> covariance = {};
  };

  /// The pose as exact as it gets: by the pixels along the edges, from where tracking at the finest level that has edges
  /// ends. A time that is up leaves it as it was tracked.
  RefinedPose Refined(const Found& found) {
    descent_.sign = found.sign;
    if (IsLate()) return TrackedPose(found.tracked);
    const Tracked start =
        Polished(model_, buffers_.scene, descent_, buffers_.descent.tracking[0], found.tracked);
    RefinedPose refined = TrackedPose(start);
    RefinementOptions options;
    options.polarity = found.sign == EdgeSign::kSame       ? EdgePolarity::kSame
                       : found.sign == EdgeSign::kReversed ? EdgePolarity::kReversed
                                                           : EdgePolarity::kPerStretch;
    options.fit_angle = options_.angle_extent > 0.0;
    options.fit_scale = options_.min_scale < options_.max_scale;
    options.start_error_px = PixelsOf(start.level);
    options.start_deviation_px = CornerDeviation(refined);
    Refine(options, refined);
    // A pose beyond the ranges is held at their border, and the rest of it fitted again.
    const Similarity held = HeldInRanges(refined.scene_from_pattern);
    if (held == refined.scene_from_pattern) return refined;
    options.fit_scale = options.fit_scale && held.scale == refined.scene_from_pattern.scale;
    options.fit_angle = options.fit_angle && held.angle == refined.scene_from_pattern.angle;
    refined.scene_from_pattern = held;
    Refine(options, refined);
    refined.scene_from_pattern = HeldInRanges(refined.scene_from_pattern);
    return refined;
  }

  void Refine(const RefinementOptions& options, RefinedPose& pose) {
    const Refinement refinement = RefinePose(model_.refinement, image_, pose.scene_from_pattern,
                                             options, buffers_.refinement);
    if (options.fit_angle && !model_.refinement.tells_angle) LeaveAngleOpen(pose.covariance);
    if (refinement.outcome != RefinementOutcome::kRefined) return;
    pose.scene_from_pattern = refinement.scene_from_pattern;
    pose.scene_from_pattern.angle = NormalizedAngle(pose.scene_from_pattern.angle);
    pose.covariance = refinement.covariance;
  }

  RefinedPose TrackedPose(const Tracked& tracked) {
    const int level = tracked.level;
    const Candidate& pose = tracked.pose;
    TrackingStep step = MeasuringStep(buffers_.scene, level, descent_.sign);
    step.holds_scale = options_.min_scale == options_.max_scale;
    step.holds_angle = options_.angle_extent == 0.0;
    RefinedPose found;
    found.scene_from_pattern = {pose.x, pose.y, NormalizedAngle(pose.angle), pose.scale};
    found.covariance = CovarianceAt(model_.LevelOf(PixelsOf(level) / pose.scale).all,
                                    GradientsAt(model_, buffers_.scene, level, pose), step, level,
                                    buffers_.descent.tracking[0], OnLevel(pose, level));
    return found;
  }

  /// Deviation of the pattern's corners, scene pixels.
  double CornerDeviation(const RefinedPose& pose) const {
    const double arm =
        0.5 * std::sqrt(model_.Width() * model_.Width() + model_.Height() * model_.Height());
    const double scale = pose.scene_from_pattern.scale;
    return std::sqrt(pose.covariance[0] + pose.covariance[5] +
                     arm * arm * (scale * scale * pose.covariance[10] + pose.covariance[15]));
  }

  Similarity HeldInRanges(const Similarity& pose) const {
    Similarity held = pose;
    held.scale = std::clamp(pose.scale, options_.min_scale, options_.max_scale);
    if (options_.angle_extent < kTwoPi) {
      const double half = 0.5 * options_.angle_extent;
      const double middle = options_.angle_start + half;
      const double off = NormalizedAngle(pose.angle - middle);
      if (std::abs(off) > half) held.angle = NormalizedAngle(middle + std::clamp(off, -half, half));
    }
    return held;
  }

  const ShapeModel& model_;
  const ImageView& image_;
  const FindOptions& options_;
  Workspace::Buffers& buffers_;
  FindResult& result_;
  DescentOptions descent_;
  Deadline deadline_;
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
  if (IsTooLarge(scene)) {
    result.status = FindStatus::kTooLarge;
    result.message = "The scene has more than 100 million pixels, or a side of more than 32767.";
    return result;
  }
  Stopwatch watch;
  ShapeSearch(model, scene, options, workspace.buffers(), result).Run();
  result.times_us.total = watch.MicrosecondsSinceLast();
  return result;
}

double HighestScore(const ShapeModel& model, const ImageView& scene, const FindOptions& options,
                    Workspace& workspace) {
  FindResult result;
  ShapeSearch search(model, scene, options, workspace.buffers(), result);
  search.FindPoses();
  return search.BestScore();
}

}  // namespace orvandel::shape
