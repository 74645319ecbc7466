// The layout that hosts on Windows were compiled against, checked while this is compiled.

#include <cstddef>

#include "orvandel/classic/qrsis.h"

#if defined(ORVANDEL_PACKED_LAYOUT)

// Classes with virtual functions have no standard layout; the compilers for Windows define their offsets all the same.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif

namespace orvandel {

static_assert(sizeof(void*) == 8);
static_assert(sizeof(std::vector<CLineSegment>) == 24 && sizeof(std::string) == 32);

static_assert(sizeof(CLineExtracter) == 100 && alignof(CLineExtracter) == 4);
static_assert(offsetof(CLineExtracter, max_deviation) == 8);
static_assert(offsetof(CLineExtracter, neighbour_offset) == 16);
static_assert(offsetof(CLineExtracter, max_fit_error) == 20);
static_assert(offsetof(CLineExtracter, min_points) == 28);
static_assert(offsetof(CLineExtracter, max_join_angle) == 32);
static_assert(offsetof(CLineExtracter, segments) == 40);
static_assert(offsetof(CLineExtracter, spare_number) == 64);
static_assert(offsetof(CLineExtracter, spare_text) == 68);

static_assert(sizeof(CLineHypGen) == 8 && alignof(CLineHypGen) == 4);

static_assert(sizeof(CPattVerify) == 80 && alignof(CPattVerify) == 4);
static_assert(offsetof(CPattVerify, matchedPositions) == 8);
static_assert(offsetof(CPattVerify, angleTolerance) == 32);
static_assert(offsetof(CPattVerify, ignorePolarity) == 40);
static_assert(offsetof(CPattVerify, searchRadius) == 44);
static_assert(offsetof(CPattVerify, pointX) == 48);
static_assert(offsetof(CPattVerify, pointY) == 56);
static_assert(offsetof(CPattVerify, pointDir) == 64);
static_assert(offsetof(CPattVerify, pointCount) == 72);
static_assert(offsetof(CPattVerify, probeCount) == 76);

/// The search object's fields are private; it lets this look.
struct WindowsLayout {
  static_assert(sizeof(QRSIS) == 460 && alignof(QRSIS) == 4);
  static_assert(offsetof(QRSIS, pattern_image_) == 8);
  static_assert(offsetof(QRSIS, pattern_width_) == 16);
  static_assert(offsetof(QRSIS, pattern_height_) == 20);
  static_assert(offsetof(QRSIS, spare_numbers_) == 24);
  static_assert(offsetof(QRSIS, reference_x_) == 40);
  static_assert(offsetof(QRSIS, reference_y_) == 48);
  static_assert(offsetof(QRSIS, found_x_) == 56);
  static_assert(offsetof(QRSIS, found_y_) == 64);
  static_assert(offsetof(QRSIS, found_angle_) == 72);
  static_assert(offsetof(QRSIS, found_scale_) == 80);
  static_assert(offsetof(QRSIS, found_score_) == 88);
  static_assert(offsetof(QRSIS, timeout_us_) == 96);
  static_assert(offsetof(QRSIS, pattern_contours_) == 100);
  static_assert(offsetof(QRSIS, scene_contours_) == 108);
  static_assert(offsetof(QRSIS, pattern_lines_) == 116);
  static_assert(offsetof(QRSIS, scene_lines_) == 216);
  static_assert(offsetof(QRSIS, hypothesis_generator_) == 316);
  static_assert(offsetof(QRSIS, verifier_) == 324);
  static_assert(offsetof(QRSIS, edge_threshold_) == 404);
  static_assert(offsetof(QRSIS, min_contour_size_) == 408);
  static_assert(offsetof(QRSIS, max_contour_size_) == 412);
  static_assert(offsetof(QRSIS, accept_score_) == 416);
  static_assert(offsetof(QRSIS, spare_number_) == 424);
  static_assert(offsetof(QRSIS, verification_fraction_) == 428);
  static_assert(offsetof(QRSIS, verification_cap_) == 436);
  static_assert(offsetof(QRSIS, min_scale_) == 440);
  static_assert(offsetof(QRSIS, max_scale_) == 448);
  static_assert(offsetof(QRSIS, pattern_lines_tried_) == 456);
};

}  // namespace orvandel

#endif
