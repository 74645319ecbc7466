#pragma once

#include <array>
#include <cmath>
#include <vector>

#include "shape/refinement/strip_kernels.h"

/// The loops over a strip's pixels as their definitions say them, one pixel and one product at a time.
namespace orvandel::reference {

/// The cubic B-spline at a distance.
inline float Spline(float distance) {
  const float d = std::abs(distance);
  if (d >= 2.0F) return 0.0F;
  const float rest = d < 1.0F ? d : 2.0F - d;
  return d < 1.0F ? (2.0F / 3.0F) - rest * rest * (1.0F - 0.5F * rest)
                  : rest * rest * rest * (1.0F / 6.0F);
}

/// Sum of the pixels around a position, each times the kernel's weight across and down; NaN where a
/// pixel is missing. `width` 1 is the plain kernel, 2 the one of doubled width.
template <typename Pixel>
double Sampled(const shape::PixelGrid<Pixel>& grid, double x, double y, int width) {
  const int reach = 2 * width;
  const auto left = static_cast<int>(std::floor(x)) - reach + 1;
  const auto top = static_cast<int>(std::floor(y)) - reach + 1;
  if (left < 0 || top < 0 || left + 2 * reach > grid.width || top + 2 * reach > grid.height)
    return std::nan("");
  double sum = 0.0;
  for (int j = top; j < top + 2 * reach; ++j) {
    for (int i = left; i < left + 2 * reach; ++i) {
      const auto* const row = reinterpret_cast<const Pixel*>(
          reinterpret_cast<const unsigned char*>(grid.pixels) + j * grid.stride);
      const double across = static_cast<double>(Spline(static_cast<float>((x - i) / width)));
      const double down = static_cast<double>(Spline(static_cast<float>((y - j) / width)));
      sum += across * down / (width * width) * static_cast<double>(row[i]);
    }
  }
  return sum;
}

/// Eight partial sums of float products, pixel i into sum i mod 8, added up as a tree of doubles.
inline double Moment(const float* weights, const float* a, const float* b, int first, int count) {
  std::array<float, 8> partial = {};
  for (int i = first; i < first + count; ++i) {
    const float weighted = weights[i] * a[i];
    partial[static_cast<std::size_t>(i - first) % 8] += weighted * b[i];
  }
  const auto pair = [&](std::size_t k) {
    return static_cast<double>(partial[k]) + static_cast<double>(partial[k + 4]);
  };
  return (pair(0) + pair(2)) + (pair(1) + pair(3));
}

/// Sum over all pixels of the product of what two influences put on them: each sample spreads over the
/// pixels around it by the kernel's weights.
inline double SpreadProduct(const std::vector<double>& x, const std::vector<double>& y,
                            const float* a, const float* b, int width, int side) {
  double sum = 0.0;
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      double at_a = 0.0;
      double at_b = 0.0;
      for (std::size_t i = 0; i < x.size(); ++i) {
        const double share =
            static_cast<double>(Spline(static_cast<float>((x[i] - column) / width))) *
            static_cast<double>(Spline(static_cast<float>((y[i] - row) / width))) / (width * width);
        at_a += share * static_cast<double>(a[i]);
        at_b += share * static_cast<double>(b[i]);
      }
      sum += at_a * at_b;
    }
  }
  return sum;
}

/// Sum over all columns of an image of the product of what two influences put on them, whatever the rows.
inline double ColumnProduct(const std::vector<double>& x, const float* a, const float* b,
                            int side) {
  double sum = 0.0;
  for (int column = 0; column < side; ++column) {
    double at_a = 0.0;
    double at_b = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      const auto share = static_cast<double>(Spline(static_cast<float>(x[i] - column)));
      at_a += share * static_cast<double>(a[i]);
      at_b += share * static_cast<double>(b[i]);
    }
    sum += at_a * at_b;
  }
  return sum;
}

/// A robust weight by its formula.
inline float Weight(float scene, float dx, float dy, float residual,
                    const shape::PixelNoise& noise) {
  const float slope = dx * dx + dy * dy;
  const float grey = std::max(scene + noise.grey_offset, 0.0F);
  const float common = noise.base + noise.per_grey * grey;
  const float square = residual * residual * noise.inverse_reach_square;
  const float share = std::max(1.0F - square / (common + noise.mismatch * slope), 0.0F);
  return share * share / (common + noise.per_slope * slope);
}

}  // namespace orvandel::reference
