#include "verify/verification_points.h"

#include <algorithm>
#include <limits>
#include <new>

#include "base/rounding.h"

namespace orvandel {
namespace {

/// Distance in points from one chosen point of a contour to the next. What the division leaves over
/// yields up to two points more than were wanted.
std::int32_t StepBetweenChosen(std::int32_t num_points, const VerificationPointOptions& options) {
  double wanted = num_points * options.fraction;
  if (wanted > options.max_per_contour) wanted = options.max_per_contour;
  const std::int32_t whole = std::max(TruncateToInt32(wanted), 1);
  return std::max(num_points / whole, 1);
}

std::int64_t NumChosen(std::int32_t num_points, const VerificationPointOptions& options) {
  if (num_points < 1) return 0;
  const std::int64_t step = StepBetweenChosen(num_points, options);
  return (num_points + step - 1) / step;
}

}  // namespace

std::int32_t CountVerificationPoints(const ContourSetView& contours,
                                     const VerificationPointOptions& options) {
  std::int64_t total = 0;
  for (const ContourRecord& contour : contours.records)
    total += NumChosen(contour.size, options);
  if (total > std::numeric_limits<std::int32_t>::max()) throw std::bad_array_new_length();
  return static_cast<std::int32_t>(total);
}

void CopyVerificationPoints(const ContourSetView& contours, const VerificationPointOptions& options,
                            double* x, double* y, double* direction) {
  for (const ContourRecord& contour : contours.records) {
    if (contour.size < 1) continue;
    const std::int64_t step = StepBetweenChosen(contour.size, options);
    for (std::int64_t i = 0; i < contour.size; i += step) {
      const auto k = static_cast<std::size_t>(contour.start + i);
      *x++ = contours.x[k];
      *y++ = contours.y[k];
      *direction++ = contours.g[k];
    }
  }
}

VerificationPoints ChooseVerificationPoints(const ContourSetView& contours,
                                            const VerificationPointOptions& options) {
  const auto count = static_cast<std::size_t>(CountVerificationPoints(contours, options));
  VerificationPoints points = {std::vector<double>(count), std::vector<double>(count),
                               std::vector<double>(count)};
  CopyVerificationPoints(contours, options, points.x.data(), points.y.data(),
                         points.direction.data());
  return points;
}

}  // namespace orvandel
