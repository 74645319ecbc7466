#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

#include "base/trigonometry.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"

namespace orvandel::test {

/// Scoring and the choice of verification points as they are told, one point and one probe
/// after the other. A `CPattVerify` gives parameters and points only.

inline int ReferenceTruncate(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0))
    return std::numeric_limits<std::int32_t>::min();
  return static_cast<int>(value);
}

struct ReferencePoint {
  double x;
  double y;
  double g;
};

struct ReferencePose {
  double tx;
  double ty;
  double angle;
  double scale;
  double cx;
  double cy;
};

struct ReferenceOffset {
  int row;
  int column;
};

/// Four sectors of 45 degrees, the same for a direction and its opposite.
inline int ReferenceOrientationClass(int degrees) {
  if (degrees <= 22 || (degrees >= 158 && degrees <= 202) || degrees >= 338) return 0;
  if (degrees <= 67 || (degrees >= 203 && degrees <= 247)) return 1;
  if (degrees <= 112 || (degrees >= 248 && degrees <= 292)) return 2;
  return 3;
}

inline ReferenceOffset ReferenceNeighbour(int orientation_class) {
  return orientation_class <= 1 ? ReferenceOffset{+1, 0} : ReferenceOffset{0, -1};
}

class ReferenceScorer {
 public:
  ReferenceScorer(const CPattVerify& verifier, const CEdgeImgComplement& edges,
                  const ReferencePose& pose)
      : verifier_(verifier),
        edges_(edges),
        pose_(pose),
        cs_(Cos(pose.angle) * pose.scale),
        sn_(Sin(pose.angle) * pose.scale) {}

  /// Adds a pattern point. `always_class_0` tells how the neighbours of its probes are chosen.
  void Add(const ReferencePoint& point, bool always_class_0) {
    ++count_;
    const double credit = Credit(point, always_class_0);
    if (credit > 0) sum_ += credit;
  }

  double Score() const { return (sum_ * 100) / count_; }
  /// Looks at pixels of the edge record, whether there is an edge point or not.
  std::int64_t NumProbes() const { return num_probes_; }

 private:
  double Credit(const ReferencePoint& point, bool always_class_0) {
    const int radius = verifier_.searchRadius;
    const double dx = point.x - pose_.cx;
    const double dy = point.y - pose_.cy;
    const int column = ReferenceTruncate((pose_.tx + dx * cs_) - dy * sn_);
    const int row = ReferenceTruncate((pose_.ty + dx * sn_) + dy * cs_);
    const bool column_inside = radius < column && column < edges_.width - radius - 1;
    const bool row_inside = radius < row && row < edges_.height - radius - 1;
    if (!column_inside || !row_inside) return 0;

    double expected = point.g - pose_.angle;
    if (!(std::abs(expected) <= 1e6)) return 0;
    while (expected > 2 * std::numbers::pi)
      expected -= 2 * std::numbers::pi;
    while (expected < 0)
      expected += 2 * std::numbers::pi;

    if (Matches(row, column, expected)) return 1;
    const int degrees = ReferenceTruncate(expected * 57.29577951308232);
    const ReferenceOffset neighbour =
        ReferenceNeighbour(always_class_0 ? 0 : ReferenceOrientationClass(degrees));
    return CreditAlongNormal(row, column, expected, neighbour);
  }

  double CreditAlongNormal(int row, int column, double expected, ReferenceOffset neighbour) {
    static constexpr double kWeights[10] = {0.99, 0.98, 0.94, 0.9, 0.86, 0.8, 0.75, 0.7, 0.64, 0.6};
    const double c = Cos(expected);
    const double s = Sin(expected);
    for (int k = 1; k <= verifier_.searchRadius; ++k) {
      const int dr = ReferenceTruncate(k * s + 0.5);
      const int dc = ReferenceTruncate(k * c + 0.5);
      if (Matches(row + dr, column - dc, expected) || Matches(row - dr, column + dc, expected) ||
          Matches(row + dr + neighbour.row, column - dc + neighbour.column, expected) ||
          Matches(row - dr - neighbour.row, column + dc - neighbour.column, expected))
        return kWeights[k];
    }
    return 0;
  }

  bool Matches(int row, int column, double expected) {
    ++num_probes_;
    const int pixel = (row % 65536) * edges_.width + (column % 65536);
    if (edges_.valid[pixel] == 0) return false;
    double d = std::abs(expected - edges_.g[pixel]);
    while (d > std::numbers::pi)
      d = 2 * std::numbers::pi - d;  // once, and then it may be negative
    if (d < verifier_.angleTolerance) return true;
    return verifier_.ignorePolarity != 0 && d > std::numbers::pi - verifier_.angleTolerance;
  }

  const CPattVerify& verifier_;
  const CEdgeImgComplement& edges_;
  ReferencePose pose_;
  double cs_;
  double sn_;
  double sum_ = 0;
  int count_ = 0;
  std::int64_t num_probes_ = 0;
};

/// @param num_probes  null, or what the score cost is added to it.
inline double ReferenceScoreAtVerifyPoints(const CPattVerify& verifier,
                                           const CEdgeImgComplement& edges,
                                           const ReferencePose& pose,
                                           std::int64_t* num_probes = nullptr) {
  ReferenceScorer scorer(verifier, edges, pose);
  for (int i = 0; i < verifier.pointCount; ++i)
    scorer.Add({verifier.pointX[i], verifier.pointY[i], verifier.pointDir[i]}, true);
  if (num_probes != nullptr) *num_probes += scorer.NumProbes();
  return scorer.Score();
}

inline double ReferenceScoreAlongContours(const CPattVerify& verifier, void* contours,
                                          const CEdgeImgComplement& edges,
                                          const ReferencePose& pose, int step) {
  ReferenceScorer scorer(verifier, edges, pose);
  if (step < 1) step = 1;
  for (int c = 0; c < ctd_contour_count(contours); ++c) {
    for (int k = 0; k < ctd_contour_size(contours, c); k += step) {
      scorer.Add({ctd_contour_x(contours, c, k), ctd_contour_y(contours, c, k),
                  ctd_contour_g(contours, c, k)},
                 false);
    }
  }
  return scorer.Score();
}

/// Distance between the chosen indices of a contour of n points.
inline int ReferenceVerificationStep(int n, double fraction, int cap) {
  double wanted = n * fraction;
  if (wanted > cap) wanted = cap;
  int count = ReferenceTruncate(wanted);
  if (count < 1) count = 1;
  const int step = n / count;
  return step < 1 ? 1 : step;
}

inline std::vector<ReferencePoint> ReferenceVerificationPoints(void* contours, double fraction,
                                                               int cap) {
  std::vector<ReferencePoint> points;
  for (int c = 0; c < ctd_contour_count(contours); ++c) {
    const int n = ctd_contour_size(contours, c);
    const int step = ReferenceVerificationStep(n, fraction, cap);
    for (int k = 0; k < n; k += step) {
      points.push_back({ctd_contour_x(contours, c, k), ctd_contour_y(contours, c, k),
                        ctd_contour_g(contours, c, k)});
    }
  }
  return points;
}

}  // namespace orvandel::test
