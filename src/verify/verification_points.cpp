// The sparse set of contour points that stands for the pattern while poses are tried.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

#include "base/rounding.h"
#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/patt_verify.h"
#include "verify/shared_array.h"

namespace orvandel {
namespace {

/// Distance in points from one chosen point of a contour to the next. What the division leaves over
/// yields up to two points more than were wanted.
std::int32_t ChoiceStep(std::int32_t num_points, double fraction, std::int32_t cap) {
  double wanted = num_points * fraction;
  if (wanted > cap) wanted = cap;
  const std::int32_t whole = std::max(TruncateToInt32(wanted), 1);
  return std::max(num_points / whole, 1);
}

std::int64_t NumChosen(std::int32_t num_points, double fraction, std::int32_t cap) {
  if (num_points < 1) return 0;
  const std::int64_t step = ChoiceStep(num_points, fraction, cap);
  return (num_points + step - 1) / step;
}

double* NewArray(std::int64_t count) {
  return new double[static_cast<std::size_t>(count)];
}

}  // namespace
}  // namespace orvandel

int CPattVerify::ChooseVerifyPoints(void* contours, double fraction, int cap) {
  CCrawler& set = orvandel::SetOf(contours);
  const auto records = orvandel::Records(set);
  std::int64_t total = 0;
  for (const ContourRecord& contour : records) {
    total += orvandel::NumChosen(contour.size, fraction, cap);
  }
  if (total > std::numeric_limits<std::int32_t>::max()) throw std::bad_array_new_length();

  // One after the other: should an array fail, those before it stay replaced, and there are no points.
  pointCount = 0;
  orvandel::ReleaseArray(pointX);
  pointX = nullptr;
  pointX = orvandel::NewArray(total);
  orvandel::ReleaseArray(pointY);
  pointY = nullptr;
  pointY = orvandel::NewArray(total);
  orvandel::ReleaseArray(pointDir);
  pointDir = nullptr;
  pointDir = orvandel::NewArray(total);

  for (const ContourRecord& contour : records) {
    if (contour.size < 1) continue;
    const std::int64_t step = orvandel::ChoiceStep(contour.size, fraction, cap);
    for (std::int64_t i = 0; i < contour.size; i += step) {
      pointX[pointCount] = set.x[contour.start + i];
      pointY[pointCount] = set.y[contour.start + i];
      pointDir[pointCount] = set.g[contour.start + i];
      ++pointCount;
    }
  }
  return 0;
}
