#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/rounding.h"
#include "orvandel/classic/edge_record.h"
#include "verify/expected_direction.h"
#include "verify/match_options.h"
#include "verify/point_mapper.h"
#include "verify/probed_neighbour.h"

namespace orvandel {

/// Looks for edges of an expected direction in a scene's edge record.
class EdgeProbe {
 public:
  /// @param edges  outlives the probe; null counts as a scene without pixels.
  EdgeProbe(const MatchOptions& options, const CEdgeImgComplement* edges) : options_(options) {
    if (edges == nullptr) return;
    present_ = edges->valid;
    directions_ = edges->g;
    width_ = edges->width;
    height_ = edges->height;
  }

  int Radius() const { return options_.radius; }

  /// Far enough from the border that every probe stays inside.
  bool IsAdmissible(PixelIndex p) const {
    return options_.radius < p.column && p.column < width_ - options_.radius - 1 &&
           options_.radius < p.row && p.row < height_ - options_.radius - 1;
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
    return difference < options_.angle_tolerance ||
           (options_.ignore_polarity && difference > kPi - options_.angle_tolerance);
  }

  /// Credit of the nearest match along the normal, beside the centre; each probed pixel has a neighbour
  /// that is probed with it.
  ///
  /// @param num_probes  raised by the pixels looked at, to whole distances.
  double CreditAlongNormal(PixelIndex centre, double expected, const NormalSteps& steps,
                           NeighbourOffset neighbour, std::int64_t& num_probes) const {
    for (int k = 1; k <= options_.radius; ++k) {
      num_probes += 4;
      const int dr = steps.rows[static_cast<std::size_t>(k)];
      const int dc = steps.columns[static_cast<std::size_t>(k)];
      const PixelIndex ahead = {centre.row + dr, centre.column - dc};
      const PixelIndex behind = {centre.row - dr, centre.column + dc};
      if (Matches(ahead, expected) || Matches(behind, expected) ||
          Matches({ahead.row + neighbour.row, ahead.column + neighbour.column}, expected) ||
          Matches({behind.row - neighbour.row, behind.column - neighbour.column}, expected)) {
        return kDistanceCredit[static_cast<std::size_t>(k)];
      }
    }
    return 0.0;
  }

 private:
  MatchOptions options_;
  const std::uint8_t* present_ = nullptr;
  const double* directions_ = nullptr;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace orvandel
