#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "image/image_view.h"
#include "shape/edges/edge_points.h"

/// The edge points of an image pixel by pixel, straight from the grey values: no rows kept, no
/// blocks, every smoothed value summed anew. What docs/edge-points.md says, in the order it says
/// it.
namespace orvandel::reference {

template <typename Pixel>
class EdgePointsOf {
 public:
  EdgePointsOf(const ImageViewOf<Pixel>& image, float least_strength)
      : image_(image), least_strength_(least_strength) {}

  std::vector<shape::edges::EdgePoint> Find() const {
    std::vector<shape::edges::EdgePoint> points;
    for (int y = 3; y < image_.height - 3; ++y) {
      for (int x = 3; x < image_.width - 3; ++x)
        AddPoint(x, y, points);
    }
    return points;
  }

 private:
  struct Step {
    int x, y;
  };

  std::int64_t Grey(int x, int y) const { return image_.Row(y)[x]; }

  std::int64_t Smoothed(int x, int y) const {
    static constexpr int kWeights[3][3] = {{1, 2, 1}, {2, 4, 2}, {1, 2, 1}};
    std::int64_t sum = 0;
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx)
        sum += kWeights[dy + 1][dx + 1] * Grey(x + dx, y + dy);
    }
    return sum;
  }

  std::int64_t Difference(int x, int y, Step along) const {
    return Smoothed(x + along.x, y + along.y) - Smoothed(x - along.x, y - along.y);
  }

  /// Sums weigh 16 and span two pixels; eighths keep the numbers those of the fast form.
  static float Scaled(std::int64_t difference) { return static_cast<float>(8 * difference); }

  static float ParabolaVertex(float before, float peak, float after) {
    return 0.5F * (after - before) / ((peak - before) + (peak - after));
  }

  static float OffsetCorrection(float offset, float relative_bend) {
    const float factor =
        std::max(0.0F, std::min(1.09F * relative_bend, 6.72F - 10.0F * relative_bend));
    return factor * offset * (0.25F - offset * offset);
  }

  static float ArcTan(float t) {
    constexpr float kCoefficients[] = {0.0208351F, -0.0851330F, 0.1801410F, -0.3302995F,
                                       0.9998660F};
    float sum = 0;
    for (const float coefficient : kCoefficients)
      sum = coefficient + t * t * sum;
    return t * sum;
  }

  static float AngleToAxis(float smaller, float larger, float relative_bend) {
    const float t = smaller / larger;
    const float widening = 1.0F + t * t;
    const float sharpness = std::min(1.0F, relative_bend * widening);
    const float amplitude = sharpness * (0.0334F + 0.0438F * sharpness);
    return ArcTan(t) - amplitude * (4.0F * t * (1.0F - t * t) / (widening * widening));
  }

  /// Unfolds the angle to the axis of the larger component into the full turn.
  static float Direction(float gx, float gy, float to_axis) {
    constexpr float kPi = 3.14159265F;
    float angle = std::fabs(gx) >= std::fabs(gy) ? to_axis : 0.5F * kPi - to_axis;
    if (gx < 0) angle = kPi - angle;
    if (gy < 0) angle = -angle;
    return angle == -kPi ? kPi : angle;
  }

  void AddPoint(int x, int y, std::vector<shape::edges::EdgePoint>& points) const {
    constexpr Step kAlongX = {1, 0};
    constexpr Step kAlongY = {0, 1};
    const std::int64_t gx = Difference(x, y, kAlongX);
    const std::int64_t gy = Difference(x, y, kAlongY);
    const float strength = std::sqrt(Scaled(gx) * Scaled(gx) + Scaled(gy) * Scaled(gy)) / 256.0F;
    if (strength < least_strength_) return;

    const Step along = std::llabs(gx) >= std::llabs(gy) ? kAlongX : kAlongY;
    const auto size_at = [&](int step) {
      return Scaled(std::llabs(Difference(x + step * along.x, y + step * along.y, along)));
    };
    const float before = size_at(-1);
    const float peak = size_at(0);
    const float after = size_at(1);
    if (peak <= before || peak < after) return;

    const float relative_bend = ((peak - before) + (peak - after)) / peak;
    const float vertex = ParabolaVertex(before, peak, after);
    const float offset = vertex + OffsetCorrection(vertex, relative_bend);
    const float smaller = Scaled(std::min(std::llabs(gx), std::llabs(gy)));
    points.push_back({static_cast<float>(x) + static_cast<float>(along.x) * offset,
                      static_cast<float>(y) + static_cast<float>(along.y) * offset,
                      Direction(Scaled(gx), Scaled(gy), AngleToAxis(smaller, peak, relative_bend)),
                      strength});
  }

  ImageViewOf<Pixel> image_;
  float least_strength_;
};

template <typename Pixel>
std::vector<shape::edges::EdgePoint> FindEdgePoints(const ImageViewOf<Pixel>& image,
                                                    float least_strength) {
  return EdgePointsOf<Pixel>(image, least_strength).Find();
}

}  // namespace orvandel::reference
