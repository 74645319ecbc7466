#include "shape/search/descent.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>

#include "base/rounding.h"

namespace orvandel::shape {
namespace {

/// Poses that go on after so many levels, per wanted instance of up to this many at least.
constexpr std::size_t kMostAfterFirstLook = 32;
constexpr std::array<std::size_t, 3> kMostAfterLevels = {32, 16, 5};
/// Poses that get the second step on a level: one step tells which are hopeless.
constexpr std::size_t kMostAfterFirstStep = 24;
constexpr std::size_t kMostPerWanted = 3;

/// A pattern is tracked down to where its pixels are this large in the scene's: finer, blur is all that is seen.
constexpr double kFinestFactor = 0.7;

/// Where the next level's noise threshold comes this close to the edges' slope, noise would move them more than the finer
/// pixels help.
constexpr double kNoisyShare = 0.35;

/// A finer level that loses that much of coverage and of slope shows blur, where the edges are not yet.
constexpr double kBlurredCoverage = 0.8;
constexpr double kBlurredSlope = 0.7;
/// Only for patterns that are not seen much smaller, and that were there before: false poses would hide on coarse levels.
constexpr double kBlurMaxFactor = 3.0;
constexpr double kBlurMinCoverage = 0.4;

/// While tracking, scales may leave the range by this share, angles by this much.
constexpr double kScaleSlack = 1.02;
constexpr double kAngleSlack = 0.035;

/// Two poses are one where no point moves by more than about this, level pixels.
constexpr double kSamePose = 1.5;

void HoldScale(const DescentOptions& options, double slack, Candidate& pose) {
  pose.scale = std::clamp(pose.scale, options.min_scale / slack, options.max_scale * slack);
}

/// The angle, in turns of the range's start, held within the range.
void HoldAngle(const DescentOptions& options, double slack, Candidate& pose) {
  if (options.angle_extent >= kTwoPi) return;
  const double middle = options.angle_start + 0.5 * options.angle_extent;
  const double half = 0.5 * options.angle_extent + slack;
  const double off = NormalizedAngle(pose.angle - middle);
  pose.angle = middle + std::clamp(off, -half, half);
}

}  // namespace

LevelPose OnLevel(const Candidate& pose, int level) {
  return {ToLevel(pose.x, level), ToLevel(pose.y, level), pose.angle, pose.scale / PixelsOf(level)};
}

const GradientPlane& GradientsAt(const ShapeModel& model, SceneLevels& scene, int level,
                                 const Candidate& pose) {
  // Samples lie up to a pixel beyond the range along a normal, and between pixels.
  constexpr double kBeyond = kMaxRange + 3;
  const LevelPose on_level = OnLevel(pose, level);
  return scene.GradientsAround(level, {on_level.x, on_level.y},
                               model.reach * on_level.scale + kBeyond);
}

TrackingStep MeasuringStep(const SceneLevels& scene, int level, EdgeSign sign) {
  TrackingStep step;
  step.least_slope = scene.LeastSlope(level);
  step.sign = sign;
  return step;
}

TrackingStep Descent::StepOn(int level) const {
  TrackingStep step = MeasuringStep(scene_, level, options_.sign);
  step.holds_scale = options_.min_scale == options_.max_scale;
  step.holds_angle = options_.angle_extent == 0.0;
  step.damping = 0.005;
  return step;
}

void Descent::TrackOn(int level, const EdgePoints& points, const TrackingStep& step,
                      std::size_t worker, Tracked& tracked) {
  LevelPose pose = OnLevel(tracked.pose, level);
  tracked.fit = Track(points, scene_.GradientsMade(level), step, buffers_.tracking[worker], pose);
  tracked.pose.x = ToScene(pose.x, level);
  tracked.pose.y = ToScene(pose.y, level);
  tracked.pose.angle = pose.angle;
  if (!step.holds_scale) tracked.pose.scale = pose.scale * PixelsOf(level);
  HoldScale(options_, kScaleSlack, tracked.pose);
  HoldAngle(options_, kAngleSlack, tracked.pose);
  tracked.pose.score = static_cast<float>(tracked.fit.Rank());
  tracked.level = level;
}

void Descent::Enter(std::span<const Candidate> candidates, int level) {
  const GradientPlane& gradients = scene_.Gradients(level);
  if (gradients.width < 4 || gradients.height < 4) return;
  TrackingStep first = StepOn(level);
  first.is_nearest = true;
  first.range = 3;
  first.reach = 3.5F;
  first.damping = 0.02;
  TrackingStep second = first;
  second.range = 2;
  second.reach = 2.5F;
  auto& incoming = buffers_.incoming;
  incoming.assign(candidates.size(), {});
  team_.Run(candidates.size(), [&](std::size_t i, std::size_t worker) {
    incoming[i].pose = candidates[i];
    const EdgePoints& points = model_.LevelOf(PixelsOf(level) / candidates[i].scale).coarse;
    TrackOn(level, points, first, worker, incoming[i]);
    TrackOn(level, points, second, worker, incoming[i]);
  });
  KeepBest(incoming, {&kMostAfterFirstLook, 1}, level);
  buffers_.active.insert(buffers_.active.end(), incoming.begin(), incoming.end());
}

/// A step with fine points, of all that are not given up.
void Descent::TrackAllOn(int level, const TrackingStep& step, std::vector<Tracked>& list) {
  // Gradients are made here, not by several workers at once.
  for (const Tracked& tracked : list)
    GradientsAt(model_, scene_, level, tracked.pose);
  team_.Run(list.size(), [&](std::size_t i, std::size_t worker) {
    if (!(list[i].pose.score > 0.0F)) return;
    TrackOn(level, model_.LevelOf(PixelsOf(level) / list[i].pose.scale).fine, step, worker,
            list[i]);
  });
}

/// Takes the score of all that are worse than so many others.
void Descent::GiveUpWorst(std::vector<Tracked>& list) {
  const std::size_t most = std::max(kMostAfterFirstStep, kMostPerWanted * options_.num_wanted);
  if (list.size() <= most) return;
  auto& scores = buffers_.scores;
  scores.clear();
  for (const Tracked& tracked : list)
    scores.push_back(tracked.pose.score);
  const auto worst = scores.begin() + static_cast<std::ptrdiff_t>(most - 1);
  std::nth_element(scores.begin(), worst, scores.end(), std::greater<>());
  const float least = *worst;
  for (Tracked& tracked : list) {
    if (tracked.pose.score < least) tracked.pose.score = 0.0F;
  }
}

void Descent::FitLevel(int level, std::vector<Tracked>& arrived) {
  TrackingStep first = StepOn(level);
  TrackingStep second = first;
  // The second step makes it exact.
  first.is_nearest = true;
  second.range = 1;
  second.reach = 2.0F;
  second.damping = 0.001;
  auto& active = buffers_.active;
  auto& finer = buffers_.finer;
  finer.assign(active.begin(), active.end());
  for (Tracked& tracked : finer)
    ++tracked.num_levels;
  TrackAllOn(level, first, finer);
  GiveUpWorst(finer);
  TrackAllOn(level, second, finer);
  std::size_t end = 0;
  for (std::size_t i = 0; i < finer.size(); ++i) {
    if (IsBlurred(active[i], finer[i])) {
      arrived.push_back(active[i]);
    } else {
      active[end++] = finer[i];
    }
  }
  active.resize(end);
  KeepBest(active, kMostAfterLevels, level);
  end = 0;
  std::size_t num_arrived = 0;
  const std::size_t most_arrived =
      std::max(kMostAfterLevels[1], kMostPerWanted * options_.num_wanted);
  for (const Tracked& tracked : active) {
    if (HasArrived(tracked, level)) {
      if (num_arrived++ < most_arrived) arrived.push_back(tracked);
    } else {
      active[end++] = tracked;
    }
  }
  active.resize(end);
}

/// Whether a pose has lost so much on the finer level that blur must hide the edges there.
bool Descent::IsBlurred(const Tracked& before, const Tracked& now) const {
  const double factor = PixelsOf(now.level) / now.pose.scale;
  return before.num_levels > 0 && factor <= kBlurMaxFactor &&
         before.fit.coverage > kBlurMinCoverage &&
         now.fit.coverage < kBlurredCoverage * before.fit.coverage &&
         now.fit.slope < kBlurredSlope * before.fit.slope;
}

bool Descent::HasArrived(const Tracked& tracked, int level) const {
  if (level == 0 || PixelsOf(level - 1) / tracked.pose.scale < kFinestFactor) return true;
  return static_cast<double>(scene_.LeastSlope(level - 1)) > kNoisyShare * tracked.fit.slope &&
         scene_.LeastSlope(level - 1) > scene_.LeastSlope(level);
}

void SortByRank(std::vector<Tracked>& list) {
  std::sort(list.begin(), list.end(), [](const Tracked& a, const Tracked& b) {
    if (a.pose.score != b.pose.score) return a.pose.score > b.pose.score;
    if (a.pose.y != b.pose.y) return a.pose.y < b.pose.y;
    if (a.pose.x != b.pose.x) return a.pose.x < b.pose.x;
    return a.pose.angle < b.pose.angle;
  });
}

/// Best first; drops what is far worse than the best, what has become the same as a better one, and all beyond the
/// numbers that go on after so many levels.
void Descent::KeepBest(std::vector<Tracked>& list, std::span<const std::size_t> most, int level) {
  if (list.empty()) return;
  SortByRank(list);
  const auto least = static_cast<float>(options_.share_of_best) * list.front().pose.score;
  const double pixels = PixelsOf(level);
  const double side = kSamePose * pixels;
  constexpr std::uint32_t kNone = 0xffffffffu;
  constexpr std::size_t kBuckets = 1024;  // a power of two
  buffers_.heads.assign(kBuckets, kNone);
  buffers_.placed.clear();
  const auto bucket_of = [](std::int64_t column, std::int64_t row) {
    return static_cast<std::size_t>(column * 73856093 ^ row * 19349663) & (kBuckets - 1);
  };
  std::size_t num_kept = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const Tracked& tracked = list[i];
    if (tracked.pose.score < least || !(tracked.pose.score > 0.0F)) break;
    const auto age =
        std::min(static_cast<std::size_t>(std::max(tracked.num_levels - 1, 0)), most.size() - 1);
    if (num_kept >= std::max(most[age], kMostPerWanted * options_.num_wanted)) continue;
    const auto column = static_cast<std::int64_t>(std::floor(tracked.pose.x / side));
    const auto row = static_cast<std::int64_t>(std::floor(tracked.pose.y / side));
    const double arm = 0.7 * model_.radius * tracked.pose.scale;
    bool is_double = false;
    for (std::int64_t y = row - 1; y <= row + 1 && !is_double; ++y) {
      for (std::int64_t x = column - 1; x <= column + 1 && !is_double; ++x) {
        for (std::uint32_t k = buffers_.heads[bucket_of(x, y)]; k != kNone && !is_double;
             k = buffers_.placed[k].next) {
          const Candidate& other = list[buffers_.placed[k].index].pose;
          is_double = std::abs(other.x - tracked.pose.x) < side &&
                      std::abs(other.y - tracked.pose.y) < side &&
                      std::abs(other.scale / tracked.pose.scale - 1.0) * arm < side &&
                      std::abs(NormalizedAngle(other.angle - tracked.pose.angle)) * arm < side;
        }
      }
    }
    if (is_double) continue;
    std::uint32_t& head = buffers_.heads[bucket_of(column, row)];
    buffers_.placed.push_back({static_cast<std::uint32_t>(num_kept), head});
    head = static_cast<std::uint32_t>(buffers_.placed.size() - 1);
    list[num_kept++] = tracked;
  }
  list.resize(num_kept);
}

namespace {

/// A step with all that is found; the pose beyond the range is held at its border, and the rest of it fitted on.
void FitOn(const ShapeModel& model, const EdgePoints& points, SceneLevels& scene,
           const DescentOptions& options, TrackingBuffers& tracking, TrackingStep& step,
           Tracked& tracked) {
  const GradientPlane& gradients = GradientsAt(model, scene, tracked.level, tracked.pose);
  LevelPose pose = OnLevel(tracked.pose, tracked.level);
  tracked.fit = Track(points, gradients, step, tracking, pose);
  const Candidate free = {
      ToScene(pose.x, tracked.level), ToScene(pose.y, tracked.level), pose.angle,
      step.holds_scale ? tracked.pose.scale : pose.scale * PixelsOf(tracked.level),
      tracked.pose.score};
  tracked.pose = free;
  HoldScale(options, 1.0, tracked.pose);
  HoldAngle(options, 0.0, tracked.pose);
  constexpr double kRounding = 1e-12;
  step.holds_scale = step.holds_scale || tracked.pose.scale != free.scale;
  step.holds_angle =
      step.holds_angle || std::abs(NormalizedAngle(tracked.pose.angle - free.angle)) > kRounding;
}

TrackingStep FinalStep(const SceneLevels& scene, int level, const DescentOptions& options) {
  TrackingStep step = MeasuringStep(scene, level, options.sign);
  step.holds_scale = options.min_scale == options.max_scale;
  step.holds_angle = options.angle_extent == 0.0;
  step.damping = 1e-4;
  return step;
}

}  // namespace

namespace {

/// Edges count as far as they scatter.
void FitTwice(const ShapeModel& model, const EdgePoints& points, SceneLevels& scene,
              const DescentOptions& options, TrackingBuffers& tracking, Tracked& tracked) {
  TrackingStep step = FinalStep(scene, tracked.level, options);
  for (int round = 0; round < 2; ++round) {
    step.reach = static_cast<float>(std::clamp(4.5 * tracked.fit.rms, 0.5, 1.5));
    FitOn(model, points, scene, options, tracking, step, tracked);
  }
}

const ModelLevel& PointsOf(const ShapeModel& model, const Tracked& tracked) {
  return model.LevelOf(PixelsOf(tracked.level) / tracked.pose.scale);
}

}  // namespace

void FitFine(const ShapeModel& model, SceneLevels& scene, const DescentOptions& options,
             TrackingBuffers& tracking, Tracked& tracked) {
  FitTwice(model, PointsOf(model, tracked).fine, scene, options, tracking, tracked);
}

void FitFinally(const ShapeModel& model, SceneLevels& scene, const DescentOptions& options,
                TrackingBuffers& tracking, Tracked& tracked) {
  FitTwice(model, PointsOf(model, tracked).all, scene, options, tracking, tracked);
}

Tracked Polished(const ShapeModel& model, SceneLevels& scene, const DescentOptions& options,
                 TrackingBuffers& tracking, const Tracked& arrived) {
  // In noise, half the threshold finds more true edges than false ones this close to the pose.
  constexpr float kLowerThreshold = 0.5F;
  constexpr double kEnoughCoverage = 0.5;
  constexpr int kRounds = 3;
  Tracked best = arrived;
  for (int level = arrived.level - 1;
       level >= 0 && PixelsOf(level) / best.pose.scale >= kFinestFactor; --level) {
    Tracked finer = best;
    finer.level = level;
    const EdgePoints& points = model.LevelOf(PixelsOf(level) / best.pose.scale).all;
    TrackingStep step = FinalStep(scene, level, options);
    step.least_slope *= kLowerThreshold;
    step.reach = 2.0F;
    for (int round = 0; round < kRounds; ++round)
      FitOn(model, points, scene, options, tracking, step, finer);
    if (finer.fit.coverage < kEnoughCoverage * arrived.fit.coverage) break;
    best = finer;
  }
  return best;
}

}  // namespace orvandel::shape
