#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvandel::reference {

/// Gradients of a scene's level, components apart.
struct Gradients {
  int width = 0;
  int height = 0;
  std::vector<int> x;
  std::vector<int> y;

  std::size_t At(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(column);
  }
};

/// One model point, and the pose as level pixels = shift + [cosine -sine; sine cosine] p.
struct ModelPoint {
  float x, y, normal_x, normal_y;
};
struct Frame {
  float x, y, cosine, sine, turn_cosine, turn_sine;
};
struct Search {
  float least_slope, least_cosine_square;
  int sign;  ///< 1, -1, or 0 for either
  int range;
  bool is_bilinear;
};

/// What is met along one point's normal.
struct Met {
  float offset = 0.0F;
  float slope = 0.0F;
  bool is_found = false;
  bool is_visible = false;
  float normal_x = 0.0F, normal_y = 0.0F, turn = 0.0F, grow = 0.0F;
};

/// The gradient at a place: that of the nearest pixel, or between four, with places beyond the image moved to its border.
inline std::array<float, 2> GradientAt(const Gradients& gradients, float x, float y,
                                       bool is_bilinear) {
  const float column = std::clamp(x, 0.0F, static_cast<float>(gradients.width - 1));
  const float row = std::clamp(y, 0.0F, static_cast<float>(gradients.height - 1));
  if (!is_bilinear) {
    const std::size_t at =
        gradients.At(static_cast<int>(column + 0.5F), static_cast<int>(row + 0.5F));
    return {static_cast<float>(gradients.x[at]), static_cast<float>(gradients.y[at])};
  }
  const int left = std::min(static_cast<int>(column), gradients.width - 2);
  const int top = std::min(static_cast<int>(row), gradients.height - 2);
  const float right_share = column - static_cast<float>(left);
  const float lower_share = row - static_cast<float>(top);
  std::array<float, 2> sum = {0.0F, 0.0F};
  for (int corner = 0; corner < 4; ++corner) {
    const bool is_right = corner % 2 == 1;
    const bool is_lower = corner / 2 == 1;
    const float share = (is_right ? right_share : 1.0F - right_share) *
                        (is_lower ? lower_share : 1.0F - lower_share);
    const std::size_t at = gradients.At(left + (is_right ? 1 : 0), top + (is_lower ? 1 : 0));
    sum[0] += share * static_cast<float>(gradients.x[at]);
    sum[1] += share * static_cast<float>(gradients.y[at]);
  }
  return sum;
}

/// Looks along one point's normal for the best peak of the slope.
inline Met Measure(const ModelPoint& point, const Frame& frame, const Search& search,
                   const Gradients& gradients) {
  Met met;
  const float arm_x = frame.cosine * point.x - frame.sine * point.y;
  const float arm_y = frame.sine * point.x + frame.cosine * point.y;
  met.normal_x = frame.turn_cosine * point.normal_x - frame.turn_sine * point.normal_y;
  met.normal_y = frame.turn_sine * point.normal_x + frame.turn_cosine * point.normal_y;
  met.turn = met.normal_y * arm_x - met.normal_x * arm_y;
  met.grow = met.normal_x * arm_x + met.normal_y * arm_y;
  const float x = frame.x + arm_x;
  const float y = frame.y + arm_y;
  met.is_visible = x >= 1.0F && y >= 1.0F && x <= static_cast<float>(gradients.width - 2) &&
                   y <= static_cast<float>(gradients.height - 2);

  std::vector<float> signed_slopes;
  std::vector<float> slopes;
  std::vector<bool> aligned;
  for (int k = -search.range - 1; k <= search.range + 1; ++k) {
    const auto t = static_cast<float>(k);
    const auto [gx, gy] =
        GradientAt(gradients, x + t * met.normal_x, y + t * met.normal_y, search.is_bilinear);
    const float slope = met.normal_x * gx + met.normal_y * gy;
    signed_slopes.push_back(slope);
    slopes.push_back(search.sign == 0 ? std::abs(slope) : static_cast<float>(search.sign) * slope);
    aligned.push_back(slope * slope >= search.least_cosine_square * (gx * gx + gy * gy));
  }
  float best = 0.0F;
  for (int k = -search.range; k <= search.range; ++k) {
    const auto i = static_cast<std::size_t>(k + search.range + 1);
    const auto t = static_cast<float>(k);
    const float rank = slopes[i] * (1.0F - 1.0F / 16.0F * t * t);
    const bool is_peak = slopes[i] > slopes[i - 1] && slopes[i] >= slopes[i + 1] && aligned[i] &&
                         slopes[i] >= search.least_slope;
    if (!is_peak || rank <= best) continue;
    best = rank;
    met.offset = t + 0.5F * (slopes[i + 1] - slopes[i - 1]) /
                         (2.0F * slopes[i] - slopes[i - 1] - slopes[i + 1]);
    met.slope = signed_slopes[i];
    met.is_found = met.is_visible;
  }
  return met;
}

/// A sum over points as it rounds: in 16 lanes of single precision, the lanes added up in double.
class LaneSum {
 public:
  void Add(std::size_t point, float value) { lanes_[point % 16] += value; }
  double Total() const {
    double total = 0.0;
    for (const float lane : lanes_)
      total += static_cast<double>(lane);
    return total;
  }

 private:
  std::array<float, 16> lanes_ = {};
};

/// Weighted sums for the normal equations, in the order xx xy xt xg yy yt yg tt tg gg x y t g w ww.
inline std::vector<double> FitSums(const std::vector<Met>& all, float reach) {
  std::array<LaneSum, 16> sums;
  const float inverse = 1.0F / reach;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Met& met = all[i];
    const float u = met.offset * inverse;
    const float rest = std::max(1.0F - u * u, 0.0F);
    const float weight = (met.is_found ? 1.0F : 0.0F) * rest * rest;
    const std::array<float, 4> j = {met.normal_x, met.normal_y, met.turn, met.grow};
    std::size_t entry = 0;
    for (std::size_t a = 0; a < 4; ++a) {
      for (std::size_t b = a; b < 4; ++b)
        sums[entry++].Add(i, weight * j[a] * j[b]);
    }
    for (std::size_t a = 0; a < 4; ++a)
      sums[entry++].Add(i, weight * j[a] * met.offset);
    sums[entry++].Add(i, weight);
    sums[entry++].Add(i, weight * met.offset * met.offset);
  }
  std::vector<double> totals;
  for (const LaneSum& sum : sums)
    totals.push_back(sum.Total());
  return totals;
}

/// Credit, visible points, points that fit, their squares and sizes of slopes, after a step of the pose.
inline std::vector<double> CreditSums(const std::vector<Met>& all,
                                      const std::array<float, 4>& step) {
  std::array<LaneSum, 5> sums;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Met& met = all[i];
    const float rest = met.offset - (met.normal_x * step[0] + met.normal_y * step[1] +
                                     met.turn * step[2] + met.grow * step[3]);
    const float u = rest * (1.0F / 1.5F);
    const float credit = met.is_found ? std::max(1.0F - u * u, 0.0F) : 0.0F;
    sums[0].Add(i, credit);
    sums[1].Add(i, met.is_visible ? 1.0F : 0.0F);
    if (credit <= 0.0F) continue;
    sums[2].Add(i, 1.0F);
    sums[3].Add(i, rest * rest);
    sums[4].Add(i, std::abs(met.slope));
  }
  std::vector<double> totals;
  for (const LaneSum& sum : sums)
    totals.push_back(sum.Total());
  return totals;
}

}  // namespace orvandel::reference
