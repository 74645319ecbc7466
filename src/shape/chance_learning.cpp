#include "shape/chance_learning.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "shape/find_shapes.h"
#include "shape/model/textures.h"
#include "shape/search/scoring.h"

namespace orvandel::shape {
namespace {

/// Scales from a quarter to four, by half octaves; beyond, the last one holds.
constexpr int kNumScales = 9;
constexpr double kSmallestScale = 0.25;

/// Scales searched around each: nearly to the next ones.
constexpr double kBelow = 0.92;
constexpr double kAbove = 1.3;

/// What is imitated better cannot be told from chance at all; a score must still be possible.
constexpr double kHighest = 0.92;

/// A pattern that is larger than the picture by more than a bit is not searched for in it.
constexpr double kLargestShare = 0.9;

/// Made when first needed, and the same for all patterns.
const std::array<PatternImage, 2>& DeadLeaves() {
  static const std::array<PatternImage, 2> leaves = {MakeDeadLeaves(1), MakeDeadLeaves(2)};
  return leaves;
}

double HighestRaw(const ShapeModel& model, const PatternImage& picture, double scale,
                  Workspace& workspace) {
  FindOptions options;
  options.min_scale = kBelow * scale;
  options.max_scale = kAbove * scale;
  options.min_score = 0.0;
  const FindResult result = FindShapes(model, picture.View(), options, workspace);
  return result.matches.empty() ? 0.0 : RawScoreOf(result.matches.front().score, 0.0);
}

}  // namespace

std::vector<ChanceLevel> LearnChances(const ShapeModel& model) {
  const PatternImage mosaic = MakeMosaic(model.image, 1);
  Workspace workspace;
  std::vector<ChanceLevel> chances;
  double scale = kSmallestScale;
  for (int i = 0; i < kNumScales; ++i) {
    const double side = std::sqrt(model.Width() * model.Height()) * scale;
    const bool fits = side < kLargestShare * kTextureHeight;
    if (!fits && !chances.empty()) break;
    double highest = HighestRaw(model, mosaic, scale, workspace);
    for (const PatternImage& leaves : DeadLeaves())
      highest = std::max(highest, HighestRaw(model, leaves, scale, workspace));
    chances.push_back({scale, std::min(highest, kHighest)});
    scale *= std::sqrt(2.0);
  }
  return chances;
}

}  // namespace orvandel::shape
