#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "contours/contour_set.h"

namespace orvandel {

/// How many points of each contour of a pattern stand for it while poses are tried. More of them tell
/// poses apart more surely, and cost more.
struct VerificationPointOptions {
  double fraction = 0.06;             ///< of a contour's points; at least one point is taken
  std::int32_t max_per_contour = 20;  ///< most points wanted of a contour; rounding may add two
};

/// Points with directions, in parallel arrays of one length.
struct VerificationPointsView {
  std::span<const double> x;  ///< pattern pixels
  std::span<const double> y;
  std::span<const double> direction;  ///< gradient direction, radians

  std::size_t size() const { return x.size(); }
};

struct VerificationPoints {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<double> direction;

  VerificationPointsView View() const { return {x, y, direction}; }
};

/// Chooses evenly spaced points of every contour, contour by contour.
///
/// @throws std::bad_alloc
VerificationPoints ChooseVerificationPoints(const ContourSetView& contours,
                                            const VerificationPointOptions& options);

/// Number of points that are chosen.
///
/// @throws std::bad_array_new_length  beyond 2^31 - 1 of them.
std::int32_t CountVerificationPoints(const ContourSetView& contours,
                                     const VerificationPointOptions& options);

/// Writes the chosen points to arrays of that length.
void CopyVerificationPoints(const ContourSetView& contours, const VerificationPointOptions& options,
                            double* x, double* y, double* direction);

}  // namespace orvandel
