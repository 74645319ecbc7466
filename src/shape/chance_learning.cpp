#include "shape/chance_learning.h"

#include <algorithm>
#include <cmath>

#include "shape/find_shapes.h"
#include "shape/model/textures.h"
#include "shape/search/scoring.h"

namespace orvandel::shape {
namespace {

/// Octaves of scale from a quarter to four; beyond, the outer ones hold.
constexpr int kNumOctaves = 4;
constexpr double kSmallestScale = 0.25;

/// What is imitated better cannot be told from chance at all; a score must still be possible.
constexpr double kHighest = 0.92;

/// A pattern that is larger than the image by more than a bit is not searched for in it.
constexpr double kLargestShare = 0.9;

/// Made when first needed, and the same for all patterns.
const PatternImage& DeadLeaves() {
  static const PatternImage leaves = MakeDeadLeaves(1);
  return leaves;
}

double HighestRaw(const ShapeModel& model, const PatternImage& image, double scale,
                  Workspace& workspace) {
  FindOptions options;
  options.min_scale = scale;
  options.max_scale = 2.0 * scale;
  options.min_score = 0.0;
  const double highest = HighestScore(model, image.View(), options, workspace);
  return highest > 0.0 ? RawScoreOf(highest, 0.0) : 0.0;
}

}  // namespace

std::vector<ChanceLevel> LearnChances(const ShapeModel& model) {
  const PatternImage mosaic = MakeMosaic(model.image, 1);
  Workspace workspace;
  std::vector<ChanceLevel> chances;
  double scale = kSmallestScale;
  for (int i = 0; i < kNumOctaves; ++i) {
    const double side = std::sqrt(model.Width() * model.Height()) * scale;
    const bool fits = side < kLargestShare * kTextureHeight;
    if (!fits && !chances.empty()) break;
    const double highest = std::max(HighestRaw(model, mosaic, scale, workspace),
                                    HighestRaw(model, DeadLeaves(), scale, workspace));
    chances.push_back({scale, std::min(highest, kHighest)});
    scale *= 2.0;
  }
  return chances;
}

}  // namespace orvandel::shape
