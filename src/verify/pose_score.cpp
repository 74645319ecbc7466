#include "verify/pose_score.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/double_cache.h"
#include "verify/edge_probe.h"

namespace orvandel {
namespace {

/// Sums the credit of points under one pose.
class CreditSum {
 public:
  CreditSum(const Similarity& scene_from_pattern, const CEdgeImgComplement* edges,
            const MatchOptions& options)
      : probe_(options, edges), mapper_(scene_from_pattern), angle_(scene_from_pattern.angle) {}

  /// @param p              pattern point from the reference point.
  /// @param credit_beside  credit where the centre pixel does not match: of centre and direction.
  template <typename CreditBeside>
  void Add(Point p, double direction, const CreditBeside& credit_beside) {
    ++num_points_;
    const PixelIndex centre = mapper_.Map(p);
    if (!probe_.IsAdmissible(centre)) return;
    const double expected = ExpectedDirection(direction, angle_);
    if (expected < 0) return;
    sum_ += probe_.Matches(centre, expected) ? 1.0 : credit_beside(centre, expected);
  }

  double CreditAlongNormal(PixelIndex centre, double expected, const NormalSteps& steps,
                           NeighbourOffset neighbour) {
    std::int64_t num_probes = 0;
    return probe_.CreditAlongNormal(centre, expected, steps, neighbour, num_probes);
  }

  double Percent() const { return sum_ * 100 / static_cast<double>(num_points_); }

 private:
  EdgeProbe probe_;
  PointMapper mapper_;
  double angle_;
  std::int64_t num_points_ = 0;
  double sum_ = 0.0;
};

/// A contour's directions are few: a detector gives 256 of them, and the means of two add the halves between.
constexpr int kLogCachedDirections = 8;

}  // namespace

double ScoreAtPoints(const VerificationPointsView& points, Point reference,
                     const Similarity& scene_from_pattern, const CEdgeImgComplement* edges,
                     const MatchOptions& options) {
  CreditSum sum(scene_from_pattern, edges, options);
  const auto credit_beside = [&](PixelIndex centre, double expected) {
    return sum.CreditAlongNormal(centre, expected, NormalSteps(expected, options.radius),
                                 kNeighbourInSearch);
  };
  for (std::size_t i = 0; i < points.size(); ++i)
    sum.Add(Point{points.x[i], points.y[i]} - reference, points.direction[i], credit_beside);
  return sum.Percent();
}

double ScoreAlongContours(const ContourSetView& contours, int step, Point reference,
                          const Similarity& scene_from_pattern, const CEdgeImgComplement* edges,
                          const MatchOptions& options) {
  CreditSum sum(scene_from_pattern, edges, options);
  DoubleCache<NormalSteps, kLogCachedDirections> cached_steps;
  const auto steps_of = [&](double expected) { return NormalSteps(expected, options.radius); };
  const auto credit_beside = [&](PixelIndex centre, double expected) {
    return sum.CreditAlongNormal(centre, expected, cached_steps.Of(expected, steps_of),
                                 NeighbourAlongEdge(expected));
  };
  const std::int64_t stride = std::max(step, 1);
  for (const ContourRecord& contour : contours.records) {
    for (std::int64_t i = 0; i < contour.size; i += stride) {
      const auto k = static_cast<std::size_t>(contour.start + i);
      sum.Add(Point{contours.x[k], contours.y[k]} - reference, contours.g[k], credit_beside);
    }
  }
  return sum.Percent();
}

}  // namespace orvandel
