#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"
#include "verify/direction_class.h"

namespace orvandel {

/// Credit of a match by its distance in pixels. The first entry stands for no search at all and is
/// never used: a match in the centre pixel earns 1.
inline constexpr std::array<double, 10> kDistanceCredit = {0.99, 0.98, 0.94, 0.9,  0.86,
                                                           0.8,  0.75, 0.7,  0.64, 0.6};
inline constexpr int kLargestRadius = static_cast<int>(kDistanceCredit.size()) - 1;

/// Directions further out than this are not directions; turning them back would take for ever.
inline constexpr double kLargestDirection = 1e6;

struct PixelIndex {
  int row;
  int column;
};

/// What counts as a match, and how far it is looked for.
struct ProbeRules {
  explicit ProbeRules(const CPattVerify& verifier)
      : tolerance(verifier.angleTolerance),
        ignore_polarity(verifier.ignorePolarity != 0),
        radius(std::clamp(verifier.searchRadius, 0, kLargestRadius)) {}

  double tolerance;
  bool ignore_polarity;
  int radius;

  friend bool operator==(const ProbeRules&, const ProbeRules&) = default;
};

/// The direction in [0, 2 pi] that a scene edge should have where the pattern's is `direction`. Rows run
/// downwards while directions turn upwards, hence the minus. Negative where there is no such direction.
inline double ExpectedDirection(double direction, double angle) {
  double expected = direction - angle;
  if (!(std::abs(expected) <= kLargestDirection)) return -1.0;
  while (expected > kTwoPi)
    expected -= kTwoPi;
  while (expected < 0)
    expected += kTwoPi;
  return expected;
}

/// Whole-pixel steps along the normal of an edge, by distance in pixels from 1 to the radius.
struct NormalSteps {
  NormalSteps() = default;
  NormalSteps(double expected, int radius) {
    const auto [s, c] = SinCosOf(expected);
    for (int k = 1; k <= radius; ++k) {
      // Truncated after half is added: negative steps come out shorter than rounded ones.
      rows[static_cast<std::size_t>(k)] = static_cast<std::int16_t>(k * s + 0.5);
      columns[static_cast<std::size_t>(k)] = static_cast<std::int16_t>(k * c + 0.5);
    }
  }

  std::array<std::int16_t, kLargestRadius + 1> rows{};
  std::array<std::int16_t, kLargestRadius + 1> columns{};
};

/// Where a pose lays the pattern's points.
class PointMapper {
 public:
  /// @param tx,ty  scene position of the point that `dx` and `dy` are measured from.
  /// @param turn   sine and cosine of the pose's angle.
  PointMapper(double tx, double ty, SinCos turn, double scale)
      : tx_(tx), ty_(ty), cosine_(turn.cosine * scale), sine_(turn.sine * scale) {}

  PixelIndex Map(double dx, double dy) const {
    return {TruncateToInt32(ty_ + dx * sine_ + dy * cosine_),
            TruncateToInt32(tx_ + dx * cosine_ - dy * sine_)};
  }

  double tx() const { return tx_; }
  double ty() const { return ty_; }
  double cosine() const { return cosine_; }
  double sine() const { return sine_; }

 private:
  double tx_;
  double ty_;
  double cosine_;
  double sine_;
};

/// Looks for edges of an expected direction in a scene's edge record.
class EdgeProbe {
 public:
  /// @param edges  outlives the probe; null counts as a scene without pixels.
  EdgeProbe(const ProbeRules& rules, const CEdgeImgComplement* edges) : rules_(rules) {
    if (edges == nullptr) return;
    present_ = edges->valid;
    directions_ = edges->g;
    width_ = edges->width;
    height_ = edges->height;
  }

  int Radius() const { return rules_.radius; }

  /// Far enough from the border that every probe stays inside.
  bool IsAdmissible(PixelIndex p) const {
    return rules_.radius < p.column && p.column < width_ - rules_.radius - 1 &&
           rules_.radius < p.row && p.row < height_ - rules_.radius - 1;
  }

  bool Matches(PixelIndex p, double expected) const {
    const std::size_t cell =
        static_cast<std::size_t>(p.row % 65536) * static_cast<std::size_t>(width_) +
        static_cast<std::size_t>(p.column % 65536);
    if (present_[cell] == 0) return false;

    // Stored directions lie in [-pi, pi), expected ones in [0, 2 pi]: one fold may leave a negative
    // difference, which matches. Scores rest on that.
    double difference = std::abs(expected - directions_[cell]);
    while (difference > kPi)
      difference = kTwoPi - difference;
    return difference < rules_.tolerance ||
           (rules_.ignore_polarity && difference > kPi - rules_.tolerance);
  }

  /// Credit of the nearest match along the normal, beside the centre; each probed pixel has a neighbour
  /// that is probed with it.
  ///
  /// @param num_probes  raised by the pixels looked at, to whole distances.
  double CreditAlongNormal(PixelIndex centre, double expected, const NormalSteps& steps,
                           FlankOffset flank, std::int64_t& num_probes) const {
    for (int k = 1; k <= rules_.radius; ++k) {
      num_probes += 4;
      const int dr = steps.rows[static_cast<std::size_t>(k)];
      const int dc = steps.columns[static_cast<std::size_t>(k)];
      const PixelIndex ahead = {centre.row + dr, centre.column - dc};
      const PixelIndex behind = {centre.row - dr, centre.column + dc};
      if (Matches(ahead, expected) || Matches(behind, expected) ||
          Matches({ahead.row + flank.row, ahead.column + flank.column}, expected) ||
          Matches({behind.row - flank.row, behind.column - flank.column}, expected)) {
        return kDistanceCredit[static_cast<std::size_t>(k)];
      }
    }
    return 0.0;
  }

 private:
  ProbeRules rules_;
  const std::uint8_t* present_ = nullptr;
  const double* directions_ = nullptr;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace orvandel
