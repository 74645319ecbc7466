#include "shape/refinement/spline_stencils.h"

namespace orvandel::shape {
namespace {

/// A 3 x 3 neighbourhood, reduced along its rows: value, first and second derivative along x.
struct RowTerms {
  float value;
  float slope;
  float curvature;
};

inline RowTerms ReduceRow(const float* middle) {
  const float left = middle[-1];
  const float right = middle[1];
  return {(left + right + 4.0F * middle[0]) * (1.0F / 6.0F), 0.5F * (right - left),
          left + right - 2.0F * middle[0]};
}

inline float Smooth(float above, float centre, float below) {
  return (above + below + 4.0F * centre) * (1.0F / 6.0F);
}

}  // namespace

void SplineGradient(const FloatImage& image, FloatImage& dx, FloatImage& dy) {
  dx.Resize(image.width, image.height);
  dy.Resize(image.width, image.height);
  dx.grey.assign(dx.grey.size(), 0.0F);
  dy.grey.assign(dy.grey.size(), 0.0F);
  for (int y = 1; y + 1 < image.height; ++y) {
    const float* const above = image.Row(y - 1);
    const float* const centre = image.Row(y);
    const float* const below = image.Row(y + 1);
    for (int x = 1; x + 1 < image.width; ++x) {
      const RowTerms a = ReduceRow(above + x);
      const RowTerms c = ReduceRow(centre + x);
      const RowTerms b = ReduceRow(below + x);
      dx.Row(y)[x] = Smooth(a.slope, c.slope, b.slope);
      dy.Row(y)[x] = 0.5F * (b.value - a.value);
    }
  }
}

void SplineValues(const FloatImage& image, const Strip& strip, BlurLevel& level) {
  const auto size = static_cast<std::size_t>(strip.Size());
  for (std::vector<float>* const values :
       {&level.value, &level.dx, &level.dy, &level.dxx, &level.dxy, &level.dyy})
    values->resize(size);
  for (std::size_t i = 0; i < size; ++i) {
    const int x = strip.column[i];
    const int y = strip.row[i];
    const RowTerms a = ReduceRow(image.Row(y - 1) + x);
    const RowTerms c = ReduceRow(image.Row(y) + x);
    const RowTerms b = ReduceRow(image.Row(y + 1) + x);
    level.value[i] = Smooth(a.value, c.value, b.value);
    level.dx[i] = Smooth(a.slope, c.slope, b.slope);
    level.dy[i] = 0.5F * (b.value - a.value);
    level.dxx[i] = Smooth(a.curvature, c.curvature, b.curvature);
    level.dxy[i] = 0.5F * (b.slope - a.slope);
    level.dyy[i] = a.value + b.value - 2.0F * c.value;
  }
}

}  // namespace orvandel::shape
