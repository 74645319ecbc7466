#include "orvandel/classic/qrsis.h"

#include "orvandel/classic/ctd.h"

namespace {

constexpr int kLongestTimeoutUs = 3999000;

}  // namespace

CLineHypGen::CLineHypGen() = default;
CLineHypGen::~CLineHypGen() = default;

QRSIS::QRSIS()
    : pattern_image_(nullptr),
      pattern_width_(0),
      pattern_height_(0),
      spare_numbers_{},
      reference_x_(0.0),
      reference_y_(0.0),
      found_x_(0.0),
      found_y_(0.0),
      found_angle_(0.0),
      found_scale_(0.0),
      found_score_(0.0),
      timeout_us_(1000000),
      pattern_contours_(nullptr),
      scene_contours_(nullptr),
      edge_threshold_(16),
      min_contour_size_(10),
      max_contour_size_(100000),
      accept_score_(80.0),
      spare_number_(0),
      verification_fraction_(0.06),
      verification_cap_(20),
      min_scale_(0.25),
      max_scale_(4.0),
      pattern_lines_tried_(5) {}

// Image and contour sets are copied as pointers: one of the pair must not be destroyed.
QRSIS::QRSIS(const QRSIS& other) = default;
QRSIS& QRSIS::operator=(const QRSIS& other) = default;

QRSIS::~QRSIS() {
  ctd_delete(pattern_contours_);
  ctd_delete(scene_contours_);
  im_delete(pattern_image_);
}

void QRSIS::Initialize() {
  pattern_contours_ = ctd_create();
  scene_contours_ = ctd_create();
}

void QRSIS::CleanUp() {
  ctd_delete(pattern_contours_);
  pattern_contours_ = nullptr;
  ctd_delete(scene_contours_);
  scene_contours_ = nullptr;
  im_delete(pattern_image_);
}

void QRSIS::SetParams(int edge_threshold, int min_size, int max_size, int accept_score) {
  edge_threshold_ = edge_threshold;
  min_contour_size_ = min_size;
  max_contour_size_ = max_size;
  accept_score_ = accept_score;
}

void QRSIS::SetMinMaxScale(double min_scale, double max_scale) {
  min_scale_ = min_scale;
  max_scale_ = max_scale;
}

bool QRSIS::SetTimeOutValue(int timeout_us) {
  timeout_us_ = timeout_us < 0                   ? 0
                : timeout_us > kLongestTimeoutUs ? kLongestTimeoutUs
                                                 : timeout_us;
  return timeout_us_ == timeout_us;
}

int QRSIS::GetPatternDx() {
  return pattern_width_;
}

int QRSIS::GetPatternDy() {
  return pattern_height_;
}

void* QRSIS::GetCrawlerPatternData() {
  return pattern_contours_;
}

void* QRSIS::GetCrawlerSceneData() {
  return scene_contours_;
}

void QRSIS::GetPatternRef(double* x, double* y) {
  *x = reference_x_;
  *y = reference_y_;
}

void QRSIS::GetFoundPattData(double* x, double* y, double* angle, double* scale, double* score) {
  *x = found_x_;
  *y = found_y_;
  *angle = found_angle_;
  *scale = found_scale_;
  *score = found_score_;
}

int QRSIS::_generateAllVerificationPts(void* /*contours*/) {
  return 0;
}
