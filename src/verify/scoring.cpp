// How well a pose of the pattern fits the edges of a scene.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/trigonometry.h"
#include "contours/point_arrays.h"
#include "orvandel/classic/patt_verify.h"
#include "verify/direction_class.h"
#include "verify/probing.h"

namespace orvandel {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

/// The final score probes along the edge.
FlankOffset FlankByDirection(double expected) {
  const auto degrees = static_cast<std::size_t>(expected * kDegreesPerRadian);
  return kFlankOffsets[static_cast<std::size_t>(kDirectionClass[degrees])];
}

/// The search's many poses are probed one row off, whatever the direction.
constexpr FlankOffset kFlankInSearch = kFlankOffsets[0];

/// Normal steps of directions that keep coming back.
class NormalStepsMemo {
 public:
  const NormalSteps& Of(double expected, int radius) {
    std::uint64_t bits;
    std::memcpy(&bits, &expected, sizeof(bits));
    Entry& entry = entries_[bits * 0x9E3779B97F4A7C15u >> (64 - kLogSize)];
    if (!entry.used || entry.bits != bits) entry = {true, bits, NormalSteps(expected, radius)};
    return entry.steps;
  }

 private:
  struct Entry {
    bool used = false;
    std::uint64_t bits = 0;
    NormalSteps steps;
  };
  static constexpr int kLogSize = 8;
  std::array<Entry, std::size_t{1} << kLogSize> entries_{};
};

/// Sums the credit of points under one pose.
class PoseFit {
 public:
  PoseFit(const CPattVerify& verifier, const CEdgeImgComplement* edges, double tx, double ty,
          double angle, double scale)
      : probe_(ProbeRules(verifier), edges),
        mapper_(tx, ty, SinCosOf(angle), scale),
        angle_(angle) {}

  /// @param dx,dy         pattern point from the reference point.
  /// @param credit_beside credit where the centre pixel does not match: of centre and direction.
  template <typename CreditBeside>
  void AddPoint(double dx, double dy, double direction, CreditBeside credit_beside) {
    ++num_points_;
    const PixelIndex centre = mapper_.Map(dx, dy);
    if (!probe_.IsAdmissible(centre)) return;
    const double expected = ExpectedDirection(direction, angle_);
    if (expected < 0) return;
    sum_ += probe_.Matches(centre, expected) ? 1.0 : credit_beside(centre, expected);
  }

  double CreditAlongNormal(PixelIndex centre, double expected, const NormalSteps& steps,
                           FlankOffset flank) {
    return probe_.CreditAlongNormal(centre, expected, steps, flank, num_probes_);
  }

  int Radius() const { return probe_.Radius(); }
  double Score() const { return sum_ * 100 / static_cast<double>(num_points_); }

 private:
  EdgeProbe probe_;
  PointMapper mapper_;
  double angle_;
  std::int64_t num_points_ = 0;
  std::int64_t num_probes_ = 0;
  double sum_ = 0.0;
};

}  // namespace
}  // namespace orvandel

double CPattVerify::ScoreAtVerifyPoints(const CEdgeImgComplement* edges, double tx, double ty,
                                        double angle, double scale, double cx, double cy) {
  orvandel::PoseFit fit(*this, edges, tx, ty, angle, scale);
  for (std::int32_t i = 0; i < pointCount; ++i) {
    fit.AddPoint(pointX[i] - cx, pointY[i] - cy, pointDir[i],
                 [&](orvandel::PixelIndex centre, double expected) {
                   return fit.CreditAlongNormal(centre, expected,
                                                orvandel::NormalSteps(expected, fit.Radius()),
                                                orvandel::kFlankInSearch);
                 });
  }
  return fit.Score();
}

double CPattVerify::ScoreAlongContours(void* contours, const CEdgeImgComplement* edges, double tx,
                                       double ty, double angle, double scale, double cx, double cy,
                                       int step) {
  orvandel::PoseFit fit(*this, edges, tx, ty, angle, scale);
  orvandel::NormalStepsMemo memo;
  CCrawler& set = orvandel::SetOf(contours);
  const std::int64_t stride = std::max(step, 1);
  for (const ContourRecord& contour : orvandel::Records(set)) {
    for (std::int64_t i = 0; i < contour.size; i += stride) {
      const std::int64_t k = contour.start + i;
      fit.AddPoint(set.x[k] - cx, set.y[k] - cy, set.g[k],
                   [&](orvandel::PixelIndex centre, double expected) {
                     return fit.CreditAlongNormal(centre, expected, memo.Of(expected, fit.Radius()),
                                                  orvandel::FlankByDirection(expected));
                   });
    }
  }
  return fit.Score();
}
