#include <algorithm>
#include <cmath>
#include <vector>

#include <opencv2/imgproc.hpp>

#include "base/rounding.h"
#include "bench/peers/opencv_image.h"
#include "bench/peers/peers.h"
#include "bench/stopwatch.h"
#include "evaluation/file_error.h"

namespace orvandel::bench {
namespace {

/// The coarsest level shows the pattern at about this side, where all angles and scales are tried.
constexpr double kCoarseSide = 22;

/// A step of angle or scale moves the pattern's corners by about so many pixels of the level.
constexpr double kCornerStep = 1.5;

constexpr std::size_t kNumCandidates = 10;

/// A correlation from which on a place is taken for the pattern.
constexpr double kAcceptScore = 0.7;

struct Pose {
  double x = 0, y = 0;  ///< of the pattern's centre, pixels of the level
  double angle = 0;
  double scale = 1;
  double score = -2;
};

/// Vertex of the parabola through (-1, before), (0, peak), (1, after), within half a step.
double Vertex(double before, double peak, double after) {
  const double bend = 2 * peak - before - after;
  return bend > 0 ? std::clamp((after - before) / (2 * bend), -0.5, 0.5) : 0;
}

/// A pattern turned and scaled, in a box about its centre, and which pixels of the box it has.
struct Template {
  cv::Mat grey;
  cv::Mat mask;
  double angle = 0;
  double scale = 1;

  double CentreX() const { return (grey.cols - 1) / 2.0; }
  double CentreY() const { return (grey.rows - 1) / 2.0; }
};

Template Turned(const cv::Mat& pattern, double angle, double scale) {
  const double cosine = scale * std::cos(angle);
  const double sine = scale * std::sin(angle);
  const double width = std::abs(cosine) * pattern.cols + std::abs(sine) * pattern.rows;
  const double height = std::abs(sine) * pattern.cols + std::abs(cosine) * pattern.rows;
  const cv::Size size(static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(height)));
  const double from_x = (pattern.cols - 1) / 2.0;
  const double from_y = (pattern.rows - 1) / 2.0;
  const cv::Mat map = (cv::Mat_<double>(2, 3) << cosine, -sine,
                       (size.width - 1) / 2.0 - cosine * from_x + sine * from_y, sine, cosine,
                       (size.height - 1) / 2.0 - sine * from_x - cosine * from_y);
  Template made;
  made.angle = angle;
  made.scale = scale;
  cv::warpAffine(pattern, made.grey, map, size, cv::INTER_LINEAR, cv::BORDER_REPLICATE);
  cv::warpAffine(cv::Mat(pattern.size(), CV_8UC1, cv::Scalar(255)), made.mask, map, size,
                 cv::INTER_NEAREST);
  return made;
}

double StepOf(const cv::Mat& pattern) {
  return kCornerStep / (0.5 * std::hypot(pattern.cols, pattern.rows));
}

class CorrelationFinder : public evaluation::Finder {
 public:
  CorrelationFinder() { cv::setNumThreads(1); }

  evaluation::PatternFrame Learn(const evaluation::ImageFile& pattern) override {
    const cv::Mat image = MatOf(*pattern.image);
    levels_ = {image.clone()};
    while (std::sqrt(levels_.back().cols * levels_.back().rows) > kCoarseSide * std::sqrt(2.0)) {
      cv::Mat half;
      cv::resize(levels_.back(), half, {}, 0.5, 0.5, cv::INTER_AREA);
      levels_.push_back(half);
    }
    if (levels_.back().cols < 4 || levels_.back().rows < 4)
      throw evaluation::FileError(pattern.path, "too narrow to be correlated");
    MakeTemplates();
    return {image.cols, image.rows, {(image.cols - 1) / 2.0, (image.rows - 1) / 2.0}};
  }

  evaluation::Finding Find(const evaluation::ImageFile& scene) override {
    const cv::Mat image = MatOf(*scene.image);
    evaluation::Finding finding;
    Pose best;
    finding.time_ms = 1e3 * SecondsOf([&] { best = BestPose(image); });
    const bool is_accepted = best.score >= kAcceptScore;
    finding.status = is_accepted ? "found" : "not_found";
    if (best.score > -1)
      finding.matches.push_back(
          {{best.x, best.y, best.angle, best.scale}, 100 * best.score, is_accepted});
    return finding;
  }

 private:
  void MakeTemplates() {
    templates_.clear();
    const cv::Mat& pattern = levels_.back();
    const double step = StepOf(pattern);
    for (double scale = kLeastScale; scale <= kMostScale * 1.001; scale += step) {
      const int num_angles = static_cast<int>(std::ceil(kTwoPi * scale / step));
      for (int i = 0; i < num_angles; ++i)
        templates_.push_back(Turned(pattern, kTwoPi * i / num_angles, scale));
    }
  }

  Pose BestPose(const cv::Mat& image) {
    scene_ = {image};
    while (scene_.size() < levels_.size()) {
      cv::Mat half;
      cv::resize(scene_.back(), half, {}, 0.5, 0.5, cv::INTER_AREA);
      scene_.push_back(half);
    }
    std::vector<Pose> candidates = CoarseCandidates();
    for (std::size_t level = levels_.size() - 1; level-- > 0;) {
      for (Pose& pose : candidates) {
        // Centres of pixels: those of a level lie half way between two of the next finer one.
        pose.x = 2 * pose.x + 0.5;
        pose.y = 2 * pose.y + 0.5;
        pose = Improved(pose, level, 1.0);
      }
      KeepBest(candidates, level == 0 ? 1 : kNumCandidates / 2);
    }
    if (candidates.empty()) return {};
    return Improved(candidates.front(), 0, 0.5);
  }

  /// The best places over all turned templates, none beside a better one.
  std::vector<Pose> CoarseCandidates() {
    const cv::Mat& scene = scene_.back();
    std::vector<Pose> poses;
    for (const Template& turned : templates_) {
      if (turned.grey.cols > scene.cols || turned.grey.rows > scene.rows) continue;
      cv::matchTemplate(scene, turned.grey, scores_, cv::TM_CCOEFF_NORMED, turned.mask);
      cv::patchNaNs(scores_, -1);
      double score = 0;
      cv::Point at;
      cv::minMaxLoc(scores_, nullptr, &score, nullptr, &at);
      if (!(score <= 1.001)) continue;  // flat places divide by nothing
      poses.push_back(
          {at.x + turned.CentreX(), at.y + turned.CentreY(), turned.angle, turned.scale, score});
    }
    KeepBest(poses, kNumCandidates);
    return poses;
  }

  static void KeepBest(std::vector<Pose>& poses, std::size_t most) {
    std::sort(poses.begin(), poses.end(),
              [](const Pose& a, const Pose& b) { return a.score > b.score; });
    std::vector<Pose> kept;
    for (const Pose& pose : poses) {
      const bool is_double = std::any_of(kept.begin(), kept.end(), [&](const Pose& other) {
        constexpr double kSamePlacePx = 3;
        constexpr double kSameAngle = 0.3;
        return std::hypot(pose.x - other.x, pose.y - other.y) < kSamePlacePx &&
               std::abs(std::remainder(pose.angle - other.angle, kTwoPi)) < kSameAngle;
      });
      if (!is_double && kept.size() < most) kept.push_back(pose);
    }
    poses = kept;
  }

  /// The best of the angles and scales around, each at its best place near, and between the steps by parabolas.
  ///
  /// @param steps  in units of the level's usual ones.
  Pose Improved(const Pose& start, std::size_t level, double steps) {
    const cv::Mat& pattern = levels_[level];
    const double scale_step = steps * StepOf(pattern);
    const double angle_step = scale_step / start.scale;
    Pose best;
    Pose tried[3][3];
    int best_i = 1;
    int best_k = 1;
    for (int i = 0; i < 3; ++i) {
      for (int k = 0; k < 3; ++k) {
        Pose pose = start;
        pose.angle += (i - 1) * angle_step;
        pose.scale += (k - 1) * scale_step;
        tried[i][k] = BestNear(pose, level);
        if (tried[i][k].score <= best.score) continue;
        best = tried[i][k];
        best_i = i;
        best_k = k;
      }
    }
    if (best_i == 1)
      best.angle += angle_step * Vertex(tried[0][best_k].score, best.score, tried[2][best_k].score);
    if (best_k == 1)
      best.scale += scale_step * Vertex(tried[best_i][0].score, best.score, tried[best_i][2].score);
    return best;
  }

  /// With the angle and scale of a pose, the best place within some pixels.
  Pose BestNear(const Pose& pose, std::size_t level) {
    constexpr int kReach = 3;
    const cv::Mat& scene = scene_[level];
    const Template turned = Turned(levels_[level], pose.angle, pose.scale);
    const int left = static_cast<int>(std::lround(pose.x - turned.CentreX())) - kReach;
    const int top = static_cast<int>(std::lround(pose.y - turned.CentreY())) - kReach;
    const cv::Rect wanted(left, top, turned.grey.cols + 2 * kReach, turned.grey.rows + 2 * kReach);
    const cv::Rect there = wanted & cv::Rect(0, 0, scene.cols, scene.rows);
    Pose best = pose;
    best.score = -2;
    if (there.width < turned.grey.cols || there.height < turned.grey.rows) return best;
    cv::matchTemplate(scene(there), turned.grey, scores_, cv::TM_CCOEFF_NORMED, turned.mask);
    cv::patchNaNs(scores_, -1);
    cv::Point at;
    cv::minMaxLoc(scores_, nullptr, &best.score, nullptr, &at);
    best.x = there.x + at.x + turned.CentreX();
    best.y = there.y + at.y + turned.CentreY();
    const auto score = [&](int dx, int dy) {
      return static_cast<double>(scores_.at<float>(at.y + dy, at.x + dx));
    };
    if (at.x > 0 && at.x + 1 < scores_.cols)
      best.x += Vertex(score(-1, 0), best.score, score(1, 0));
    if (at.y > 0 && at.y + 1 < scores_.rows)
      best.y += Vertex(score(0, -1), best.score, score(0, 1));
    return best;
  }

  std::vector<cv::Mat> levels_;  ///< of the pattern, from the finest
  std::vector<cv::Mat> scene_;
  std::vector<Template> templates_;  ///< of the coarsest level
  cv::Mat scores_;
};

}  // namespace

std::unique_ptr<evaluation::Finder> MakeCorrelationFinder() {
  return std::make_unique<CorrelationFinder>();
}

}  // namespace orvandel::bench
