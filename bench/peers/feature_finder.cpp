#include <cmath>
#include <utility>
#include <vector>

#include <opencv2/calib3d.hpp>
#include <opencv2/features2d.hpp>

#include "bench/peers/opencv_image.h"
#include "bench/peers/peers.h"
#include "bench/stopwatch.h"
#include "evaluation/file_error.h"

namespace orvandel::bench {
namespace {

/// D. Lowe's test: the nearest descriptor must be that much nearer than the next.
constexpr float kDistanceRatio = 0.8F;

constexpr double kInlierDistancePx = 3;

/// Fewer pairs agree by chance, too.
constexpr int kLeastInliers = 8;

class FeatureFinder : public evaluation::Finder {
 public:
  FeatureFinder(cv::Ptr<cv::Feature2D> features, int norm)
      : features_(std::move(features)), matcher_(norm) {
    cv::setNumThreads(1);
  }

  evaluation::PatternFrame Learn(const evaluation::ImageFile& pattern) override {
    features_->detectAndCompute(MatOf(*pattern.image), cv::noArray(), pattern_points_,
                                pattern_descriptors_);
    if (pattern_points_.size() < 2)
      throw evaluation::FileError(pattern.path, "fewer than two features");
    return {pattern.image->width, pattern.image->height, {0, 0}};
  }

  evaluation::Finding Find(const evaluation::ImageFile& scene) override {
    const cv::Mat image = MatOf(*scene.image);
    evaluation::Finding finding;
    finding.status = "not_found";
    finding.time_ms = 1e3 * SecondsOf([&] { FindIn(image, finding); });
    return finding;
  }

 private:
  void FindIn(const cv::Mat& image, evaluation::Finding& finding) {
    std::vector<cv::KeyPoint> points;
    cv::Mat descriptors;
    features_->detectAndCompute(image, cv::noArray(), points, descriptors);
    if (points.size() < 2) return;
    std::vector<std::vector<cv::DMatch>> nearest;
    matcher_.knnMatch(pattern_descriptors_, descriptors, nearest, 2);
    std::vector<cv::Point2f> in_pattern;
    std::vector<cv::Point2f> in_scene;
    for (const std::vector<cv::DMatch>& pair : nearest) {
      if (pair.size() < 2 || pair[0].distance > kDistanceRatio * pair[1].distance) continue;
      in_pattern.push_back(pattern_points_[static_cast<std::size_t>(pair[0].queryIdx)].pt);
      in_scene.push_back(points[static_cast<std::size_t>(pair[0].trainIdx)].pt);
    }
    if (in_pattern.size() < 2) return;
    std::vector<unsigned char> is_inlier;
    const cv::Mat map =
        cv::estimateAffinePartial2D(in_pattern, in_scene, is_inlier, cv::RANSAC, kInlierDistancePx);
    if (map.empty()) return;
    const double cosine = map.at<double>(0, 0);
    const double sine = map.at<double>(1, 0);
    const int num_inliers = cv::countNonZero(is_inlier);
    const bool is_accepted = num_inliers >= kLeastInliers;
    if (is_accepted) finding.status = "found";
    finding.matches.push_back({{map.at<double>(0, 2), map.at<double>(1, 2),
                                std::atan2(sine, cosine), std::hypot(cosine, sine)},
                               100.0 * num_inliers / static_cast<double>(in_pattern.size()),
                               is_accepted});
  }

  cv::Ptr<cv::Feature2D> features_;
  cv::BFMatcher matcher_;
  std::vector<cv::KeyPoint> pattern_points_;
  cv::Mat pattern_descriptors_;
};

}  // namespace

std::unique_ptr<evaluation::Finder> MakeSiftFinder() {
  return std::make_unique<FeatureFinder>(cv::SIFT::create(), cv::NORM_L2);
}

std::unique_ptr<evaluation::Finder> MakeOrbFinder() {
  constexpr int kMostFeatures = 2000;  // 500, the usual, are few for a scene of many things
  return std::make_unique<FeatureFinder>(cv::ORB::create(kMostFeatures), cv::NORM_HAMMING);
}

}  // namespace orvandel::bench
