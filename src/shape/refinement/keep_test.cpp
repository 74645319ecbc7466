#include "shape/refinement/keep_test.h"

#include <algorithm>
#include <cmath>

namespace orvandel::shape {
namespace {

using Buffers = RefinementWorkspace::Buffers;

/// A fit that ends further off than starts are has found something else: scene pixels, and in start
/// errors.
constexpr double kFarthest = 3.0;
constexpr double kFarthestByError = 2.0;

/// Below so short a way, in pattern pixels, both poses show the pattern alike.
constexpr double kShortWay = 0.25;
/// By what the start must have more support than the fit.
constexpr double kMoreSupport = 1.01;

/// A fit whose residuals pull more than noise can, or that leaves much unexplained, is doubtful; then the
/// start stays unless the fit claims to be clearly more exact.
constexpr double kDoubtfulInconsistency = 1.5;
constexpr double kDoubtfulShare = 0.85;
constexpr double kClearlyMoreExact = 0.8;

/// Root of the mean square distance of the pattern's corners, carried by two poses; scene pixels.
double CornerDistance(const Similarity& a, const Similarity& b, double radius) {
  const SinCos turn_a = SinCosOf(a.angle);
  const SinCos turn_b = SinCosOf(b.angle);
  const Point shift = {a.x - b.x, a.y - b.y};
  const Point turn = {a.scale * turn_a.cosine - b.scale * turn_b.cosine,
                      a.scale * turn_a.sine - b.scale * turn_b.sine};
  return std::sqrt(Dot(shift, shift) + radius * radius * Dot(turn, turn));
}

/// What the best gain and bias leave of the scene.
double LeftByLight(const StretchSums& sums) {
  if (!(sums.Weight() > 0.0)) return 0.0;
  const double spread = sums.PatternSpread();
  const double product = sums.at[kPattern][kScene] - sums.PatternMean() * sums.at[kOne][kScene];
  return sums.SceneSpread() - (spread > 0.0 ? product * product / spread : 0.0);
}

/// The same over all stretches, or a pair for each.
double LeftByLight(const Buffers& buffers, bool own_light) {
  StretchSums all;
  double left = 0.0;
  for (std::size_t t = 0; t < buffers.sums.size(); ++t) {
    if (buffers.num_pixels[t] == 0) continue;
    const StretchSums& sums = buffers.sums[t];
    left += LeftByLight(sums);
    for (const Column a : {kPattern, kOne, kScene}) {
      for (const Column b : {kPattern, kOne, kScene})
        all.at[a][b] += sums.at[a][b];
    }
  }
  return own_light ? left : LeftByLight(all);
}

/// Share of the scene's variation along the outline that the pattern explains, noise left out.
double ShareOfAll(const Strip& strip, const StripFit& fit, Buffers& buffers) {
  SumAlike(strip, buffers);
  double whole = 0.0;
  double noise = 0.0;
  for (std::size_t t = 0; t < buffers.sums.size(); ++t) {
    if (buffers.num_pixels[t] == 0) continue;
    const StretchSums& sums = buffers.sums[t];
    const double grey = sums.at[kOne][kScene] / sums.Weight() + buffers.source.offset;
    whole += sums.SceneSpread();
    noise += (fit.noise.base + fit.noise.per_grey * grey) * buffers.num_pixels[t];
  }
  const double rest = LeftByLight(buffers, fit.has_own_light) - noise;
  return whole > noise ? 1.0 - rest / (whole - noise) : 0.0;
}

}  // namespace

RefinementOutcome JudgeFit(const RefinementModel& model, const RefinementOptions& options,
                           const Similarity& start, const StripFit& fit,
                           const FitCovariance& covariance, Buffers& buffers) {
  const double way = CornerDistance(start, fit.scene_from_pattern, model.radius);
  if (!(way <= std::max(kFarthest, kFarthestByError * options.start_error_px)))
    return RefinementOutcome::kTooFar;
  const Strip& strip = StripOf(model, fit);
  if (way > kShortWay * start.scale) {
    const double support = SupportOf(buffers);
    if (SupportAt(strip, start, fit, buffers) > kMoreSupport * support)
      return RefinementOutcome::kLessSupport;
  }
  const bool is_doubtful = covariance.inconsistency > kDoubtfulInconsistency ||
                           ShareOfAll(strip, fit, buffers) < kDoubtfulShare;
  if (is_doubtful && options.start_deviation_px > 0.0 &&
      CornerDeviation(covariance, start.scale) > kClearlyMoreExact * options.start_deviation_px)
    return RefinementOutcome::kLessCertain;
  return RefinementOutcome::kRefined;
}

}  // namespace orvandel::shape
