// The search object that hosts link: its layout and status numbers round the functions of this room.

#include "orvandel/classic/qrsis.h"

#include "contours/crawler_adapter.h"
#include "lines/classic_segment.h"
#include "orvandel/classic/ctd.h"
#include "platform/image_ptr.h"
#include "platform/tick_counter.h"
#include "search/contour_preparation.h"
#include "search/deadline.h"
#include "search/knowledge_file.h"
#include "search/segment_model.h"
#include "search/segment_search.h"
#include "verify/verifier_view.h"

namespace {

using orvandel::CrawlOptions;
using orvandel::LearningOutcome;
using orvandel::LearntSegments;
using orvandel::SegmentMatch;
using orvandel::SegmentModelOptions;
using orvandel::SegmentModelView;
using orvandel::SegmentSearchOptions;
using orvandel::SegmentSearchOutcome;
using orvandel::VerificationPointOptions;

constexpr int kLongestTimeoutUs = 3999000;
constexpr int kEstimateThreshold = -1;

// What `TrainIt` and `LookForIt` return.
constexpr int kDone = 0;
constexpr int kNoPatternContour = 1;
constexpr int kUntrained = 1;
constexpr int kNoSceneContour = 2;
constexpr int kNotInitialized = 3;
constexpr int kNoSegment = 4;

/// A search that ran out of time counts as done, with a result of zeros.
int StatusOf(SegmentSearchOutcome outcome) {
  switch (outcome) {
    case SegmentSearchOutcome::kPoseDetermined:
    case SegmentSearchOutcome::kOutOfTime:
      return kDone;
    case SegmentSearchOutcome::kNoContour:
      return kNoSceneContour;
    case SegmentSearchOutcome::kNoSegment:
      return kNoSegment;
  }
  return kNoSegment;
}

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
      timeout_us_(SegmentSearchOptions{}.timeout_us),
      pattern_contours_(nullptr),
      scene_contours_(nullptr),
      edge_threshold_(CrawlOptions{}.edge_threshold),
      min_contour_size_(CrawlOptions{}.min_size),
      max_contour_size_(CrawlOptions{}.max_size),
      accept_score_(SegmentSearchOptions{}.accept_score),
      spare_number_(0),
      verification_fraction_(VerificationPointOptions{}.fraction),
      verification_cap_(VerificationPointOptions{}.max_per_contour),
      min_scale_(SegmentSearchOptions{}.min_scale),
      max_scale_(SegmentSearchOptions{}.max_scale),
      pattern_lines_tried_(SegmentSearchOptions{}.max_pattern_segments) {}

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

int QRSIS::TrainIt(tImage* image) {
  pattern_width_ = image != nullptr ? image->width : 0;
  pattern_height_ = image != nullptr ? image->height : 0;
  im_delete(pattern_image_);
  pattern_image_ = nullptr;

  // The crawl overwrites the caller's image; the copy becomes the object's own once all has gone well.
  orvandel::ImagePtr copy(im_duplicate(image));
  if (pattern_contours_ == nullptr) return kNotInitialized;
  if (!copy) return kNoPatternContour;

  if (edge_threshold_ == kEstimateThreshold) {
    edge_threshold_ = ctd_compute_edge_strength(pattern_contours_, image);
  }
  const CrawlOptions crawl_options = {edge_threshold_, min_contour_size_, max_contour_size_};
  orvandel::PrepareContours(pattern_contours_, image, crawl_options);
  if (ctd_contour_count(pattern_contours_) == 0) return kNoPatternContour;

  SegmentModelOptions options;
  options.points = {verification_fraction_, verification_cap_};
  const LearntSegments learnt =
      orvandel::LearnSegmentModel(orvandel::ViewOf(orvandel::SetOf(pattern_contours_)), options);
  reference_x_ = learnt.model.reference.x;
  reference_y_ = learnt.model.reference.y;
  orvandel::CopySegments(learnt.model.segments, pattern_lines_.segments);
  if (learnt.outcome != LearningOutcome::kLearnt) return kNoSegment;

  orvandel::SetPoints(verifier_, learnt.model.points.View());
  pattern_image_ = copy.release();
  return kDone;
}

int QRSIS::LookForIt(tImage* image) {
  if (pattern_image_ == nullptr) return kUntrained;

  const orvandel::Deadline deadline(orvandel::ProcessTickCounter(), timeout_us_);
  found_x_ = found_y_ = found_angle_ = found_scale_ = found_score_ = 0.0;
  if (scene_contours_ == nullptr) return kNotInitialized;

  const CrawlOptions crawl_options = {edge_threshold_, min_contour_size_, max_contour_size_};
  orvandel::PrepareContours(scene_contours_, image, crawl_options);
  const auto pattern_segments = orvandel::SegmentsOf(pattern_lines_.segments);
  const SegmentModelView model = {{reference_x_, reference_y_},
                                  pattern_segments,
                                  orvandel::PointsOf(verifier_),
                                  orvandel::ViewOf(orvandel::SetOf(pattern_contours_)),
                                  {},
                                  orvandel::MatchOptionsOf(verifier_)};
  const CCrawler& scene = orvandel::SetOf(scene_contours_);
  const SegmentSearchOptions options = {min_scale_, max_scale_, accept_score_, pattern_lines_tried_,
                                        timeout_us_};
  const SegmentMatch match =
      orvandel::FindBySegments(model, {orvandel::ViewOf(scene), scene.edgeIm}, options, deadline);

  orvandel::CopySegments(match.scene_segments, scene_lines_.segments);
  found_x_ = match.scene_from_pattern.x;
  found_y_ = match.scene_from_pattern.y;
  found_angle_ = match.scene_from_pattern.angle;
  found_scale_ = match.scene_from_pattern.scale;
  found_score_ = match.score;
  if (match.outcome == SegmentSearchOutcome::kNoContour &&
      ctd_contour_count(scene_contours_) != 0) {
    // A file that could not be read leaves a set that counts contours and has none: nothing straight in them.
    return deadline.HasPassed() ? kDone : kNoSegment;
  }
  return StatusOf(match.outcome);
}

bool QRSIS::SaveKnowledge(const char* path) {
  if (pattern_image_ == nullptr || path == nullptr) return false;
  return orvandel::WriteKnowledge(pattern_image_, path);
}

bool QRSIS::LoadKnowledge(const char* path) {
  if (path == nullptr) return false;
  const orvandel::ImagePtr image = orvandel::ReadKnowledge(path);
  if (!image) return false;
  TrainIt(image.get());
  return true;
}

int QRSIS::_generateAllVerificationPts(void* /*contours*/) {
  return 0;
}
