// Learning a pattern from its image.

#include "orvandel/classic/qrsis.h"
#include "platform/image_ptr.h"
#include "search/contour_preparation.h"

namespace {

constexpr int kTrained = 0;
constexpr int kNoContour = 1;
constexpr int kNotInitialized = 3;
constexpr int kNoSegment = 4;

constexpr int kEstimateThreshold = -1;

}  // namespace

int QRSIS::TrainIt(tImage* image) {
  pattern_width_ = image != nullptr ? image->width : 0;
  pattern_height_ = image != nullptr ? image->height : 0;
  im_delete(pattern_image_);
  pattern_image_ = nullptr;

  // The crawl uses up the caller's image; the copy becomes the object's own once all has gone well.
  orvandel::ImagePtr copy(im_duplicate(image));
  if (pattern_contours_ == nullptr) return kNotInitialized;
  if (!copy) return kNoContour;

  if (edge_threshold_ == kEstimateThreshold) {
    edge_threshold_ = ctd_compute_edge_strength(pattern_contours_, image);
  }
  const int num_contours = orvandel::PrepareContours(
      pattern_contours_, image, {edge_threshold_, min_contour_size_, max_contour_size_});
  if (num_contours == 0) return kNoContour;

  ctd_centroid(pattern_contours_, &reference_x_, &reference_y_);
  if (pattern_lines_.Extract(pattern_contours_) == 0) return kNoSegment;
  verifier_.ChooseVerifyPoints(pattern_contours_, verification_fraction_, verification_cap_);
  pattern_image_ = copy.release();
  return kTrained;
}
