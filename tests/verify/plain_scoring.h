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

/// Scoring and the choice of verification points in their plainest form, one point and one probe
/// after the other. A `CPattVerify` gives parameters and points only.

inline int PlainTruncate(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0))
    return std::numeric_limits<std::int32_t>::min();
  return static_cast<int>(value);
}

struct PlainPoint {
  double x;
  double y;
  double g;
};

struct PlainPose {
  double tx;
  double ty;
  double angle;
  double scale;
  double cx;
  double cy;
};

struct PlainOffset {
  int row;
  int column;
};

/// Four sectors of 45 degrees, the same for a direction and its opposite.
inline int PlainDirectionClass(int degrees) {
  if (degrees <= 22 || (degrees >= 158 && degrees <= 202) || degrees >= 338) return 0;
  if (degrees <= 67 || (degrees >= 203 && degrees <= 247)) return 1;
  if (degrees <= 112 || (degrees >= 248 && degrees <= 292)) return 2;
  return 3;
}

inline PlainOffset PlainFlank(int direction_class) {
  return direction_class <= 1 ? PlainOffset{+1, 0} : PlainOffset{0, -1};
}

class PlainScorer {
 public:
  PlainScorer(const CPattVerify& verifier, const CEdgeImgComplement& edges, const PlainPose& pose)
      : verifier_(verifier),
        edges_(edges),
        pose_(pose),
        cs_(Cos(pose.angle) * pose.scale),
        sn_(Sin(pose.angle) * pose.scale) {}

  /// Adds a pattern point. `always_class_0` tells how its flank probes are chosen.
  void Add(const PlainPoint& point, bool always_class_0) {
    ++count_;
    const double credit = Credit(point, always_class_0);
    if (credit > 0) sum_ += credit;
  }

  double Score() const { return (sum_ * 100) / count_; }

 private:
  double Credit(const PlainPoint& point, bool always_class_0) const {
    const int radius = verifier_.searchRadius;
    const double dx = point.x - pose_.cx;
    const double dy = point.y - pose_.cy;
    const int column = PlainTruncate((pose_.tx + dx * cs_) - dy * sn_);
    const int row = PlainTruncate((pose_.ty + dx * sn_) + dy * cs_);
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
    const int degrees = PlainTruncate(expected * 57.29577951308232);
    const PlainOffset flank = PlainFlank(always_class_0 ? 0 : PlainDirectionClass(degrees));
    return CreditAlongNormal(row, column, expected, flank);
  }

  double CreditAlongNormal(int row, int column, double expected, PlainOffset flank) const {
    static constexpr double kWeights[10] = {0.99, 0.98, 0.94, 0.9, 0.86, 0.8, 0.75, 0.7, 0.64, 0.6};
    const double c = Cos(expected);
    const double s = Sin(expected);
    for (int k = 1; k <= verifier_.searchRadius; ++k) {
      const int dr = PlainTruncate(k * s + 0.5);
      const int dc = PlainTruncate(k * c + 0.5);
      if (Matches(row + dr, column - dc, expected) || Matches(row - dr, column + dc, expected) ||
          Matches(row + dr + flank.row, column - dc + flank.column, expected) ||
          Matches(row - dr - flank.row, column + dc - flank.column, expected))
        return kWeights[k];
    }
    return 0;
  }

  bool Matches(int row, int column, double expected) const {
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
  PlainPose pose_;
  double cs_;
  double sn_;
  double sum_ = 0;
  int count_ = 0;
};

inline double PlainScoreAtVerifyPoints(const CPattVerify& verifier, const CEdgeImgComplement& edges,
                                       const PlainPose& pose) {
  PlainScorer scorer(verifier, edges, pose);
  for (int i = 0; i < verifier.pointCount; ++i)
    scorer.Add({verifier.pointX[i], verifier.pointY[i], verifier.pointDir[i]}, true);
  return scorer.Score();
}

inline double PlainScoreAlongContours(const CPattVerify& verifier, void* contours,
                                      const CEdgeImgComplement& edges, const PlainPose& pose,
                                      int step) {
  PlainScorer scorer(verifier, edges, pose);
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
inline int PlainVerificationStep(int n, double fraction, int cap) {
  double wanted = n * fraction;
  if (wanted > cap) wanted = cap;
  int count = PlainTruncate(wanted);
  if (count < 1) count = 1;
  const int step = n / count;
  return step < 1 ? 1 : step;
}

inline std::vector<PlainPoint> PlainVerificationPoints(void* contours, double fraction, int cap) {
  std::vector<PlainPoint> points;
  for (int c = 0; c < ctd_contour_count(contours); ++c) {
    const int n = ctd_contour_size(contours, c);
    const int step = PlainVerificationStep(n, fraction, cap);
    for (int k = 0; k < n; k += step) {
      points.push_back({ctd_contour_x(contours, c, k), ctd_contour_y(contours, c, k),
                        ctd_contour_g(contours, c, k)});
    }
  }
  return points;
}

}  // namespace orvandel::test
