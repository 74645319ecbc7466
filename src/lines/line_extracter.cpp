#include "orvandel/classic/line_extracter.h"

#include "contours/crawler_adapter.h"
#include "lines/classic_segment.h"
#include "lines/line_extraction.h"
#include "lines/straight_points.h"

namespace {

constexpr orvandel::LineOptions kDefaults;

orvandel::LineOptions OptionsOf(const CLineExtracter& extracter) {
  return {extracter.max_deviation, extracter.neighbour_offset, extracter.max_fit_error,
          extracter.min_points, extracter.max_join_angle};
}

}  // namespace

CLineExtracter::CLineExtracter()
    : max_deviation(kDefaults.max_deviation),
      neighbour_offset(kDefaults.neighbour_offset),
      max_fit_error(kDefaults.max_fit_error),
      min_points(kDefaults.min_points),
      max_join_angle(kDefaults.max_join_angle),
      spare_number(0) {}

CLineExtracter::CLineExtracter(const CLineExtracter& other) = default;
CLineExtracter& CLineExtracter::operator=(const CLineExtracter& other) = default;
CLineExtracter::~CLineExtracter() = default;

std::vector<CLineSegment>& CLineExtracter::GetSegments() {
  return segments;
}

int CLineExtracter::Extract(void* contours) {
  segments.clear();
  orvandel::CopySegments(
      orvandel::ExtractSegments(orvandel::ViewOf(orvandel::SetOf(contours)), OptionsOf(*this)),
      segments);
  return static_cast<int>(segments.size());
}

int CLineExtracter::MarkStraightPoints(const double* x, const double* y, int* f, int n,
                                       int closed) {
  if (n < 1) return 1;
  const auto count = static_cast<std::size_t>(n);
  // Coordinates are only read; flags are the same bits with a sign and without.
  const orvandel::ContourView contour = {{const_cast<double*>(x), count},
                                         {const_cast<double*>(y), count},
                                         {},
                                         {reinterpret_cast<std::uint32_t*>(f), count},
                                         closed != 0};
  return orvandel::MarkStraightPoints(contour, OptionsOf(*this)) ? 0 : 1;
}
