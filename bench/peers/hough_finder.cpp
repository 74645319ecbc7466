#include <algorithm>
#include <cmath>
#include <vector>

#include <opencv2/imgproc.hpp>

#include "bench/peers/opencv_image.h"
#include "bench/peers/peers.h"
#include "bench/stopwatch.h"
#include "evaluation/pose_error.h"

namespace orvandel::bench {
namespace {

/// Its cost grows with the square of the edge points: the pattern is made this small ...
constexpr double kSide = 40;
/// ... and angles and scales are tried in these steps.
constexpr double kAngleStepDeg = 5;
constexpr double kScaleStep = 0.1;

/// So many votes tell the pattern.
constexpr int kLeastVotes = 30;

class HoughFinder : public evaluation::Finder {
 public:
  HoughFinder() : hough_(cv::createGeneralizedHoughGuil()) {
    cv::setNumThreads(1);
    hough_->setMinAngle(0);
    hough_->setMaxAngle(360);
    hough_->setAngleStep(kAngleStepDeg);
    hough_->setMinScale(kLeastScale);
    hough_->setMaxScale(kMostScale);
    hough_->setScaleStep(kScaleStep);
    hough_->setAngleEpsilon(kAngleStepDeg / 2);
    hough_->setAngleThresh(200);
    hough_->setScaleThresh(50);
    hough_->setPosThresh(kLeastVotes);
    hough_->setMinDist(8);
    hough_->setDp(1);
    hough_->setLevels(180);
    hough_->setCannyLowThresh(50);
    hough_->setCannyHighThresh(100);
  }

  evaluation::PatternFrame Learn(const evaluation::ImageFile& pattern) override {
    const cv::Mat image = MatOf(*pattern.image);
    shrunk_ = std::min(1.0, kSide / std::sqrt(image.cols * image.rows));
    cv::Mat small;
    cv::resize(image, small, {}, shrunk_, shrunk_, cv::INTER_AREA);
    hough_->setTemplate(small);
    // It tells the place of the middle pixel that it chooses in the small image.
    const Point middle = {small.cols / 2 + 0.5, small.rows / 2 + 0.5};
    return {image.cols, image.rows, {middle.x / shrunk_ - 0.5, middle.y / shrunk_ - 0.5}};
  }

  evaluation::Finding Find(const evaluation::ImageFile& scene) override {
    const cv::Mat image = MatOf(*scene.image);
    std::vector<cv::Vec4f> places;
    cv::Mat votes;
    evaluation::Finding finding;
    finding.time_ms = 1e3 * SecondsOf([&] {
                        cv::Mat small;
                        cv::resize(image, small, {}, shrunk_, shrunk_, cv::INTER_AREA);
                        hough_->detect(small, places, votes);
                      });
    finding.status = "not_found";
    if (places.empty()) return finding;
    int most = 0;
    std::size_t best = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const int of_place = votes.empty() ? 0 : votes.ptr<cv::Vec3i>(0)[i][0];
      if (of_place > most) best = i;
      most = std::max(most, of_place);
    }
    const cv::Vec4d place = places[best];
    finding.status = "found";
    finding.matches.push_back({{(place[0] + 0.5) / shrunk_ - 0.5, (place[1] + 0.5) / shrunk_ - 0.5,
                                evaluation::Radians(place[3]), place[2]},
                               static_cast<double>(most),
                               true});
    return finding;
  }

 private:
  cv::Ptr<cv::GeneralizedHoughGuil> hough_;
  double shrunk_ = 1;
};

}  // namespace

std::unique_ptr<evaluation::Finder> MakeHoughFinder() {
  return std::make_unique<HoughFinder>();
}

}  // namespace orvandel::bench
