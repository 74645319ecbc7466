#pragma once

#include <array>
#include <vector>

#include "base/geometry.h"
#include "image/gradients.h"
#include "shape/model/shape_model.h"
#include "shape/search/response_maps.h"
#include "shape/search/tracking_kernels.h"

namespace orvandel::shape {

/// A pose in a level's pixels: where the pattern's centre lies, the angle, and level pixels per pattern pixel.
struct LevelPose {
  double x = 0.0;
  double y = 0.0;
  double angle = 0.0;
  double scale = 1.0;
};

/// The place in pixels of level `level` for one in scene pixels, and back.
inline double ToLevel(double scene, int level) {
  return (scene + 0.5) / static_cast<double>(1 << level) - 0.5;
}
inline double ToScene(double in_level, int level) {
  return (in_level + 0.5) * static_cast<double>(1 << level) - 0.5;
}

struct TrackingBuffers {
  std::array<std::vector<float>, 8> arrays;

  /// Arrays for at least this many entries.
  MeasuredArrays For(std::size_t padded);
};

/// What a step of tracking looks at.
struct TrackingStep {
  bool is_nearest = false;      ///< nearest pixels instead of bilinear ones
  int range = 2;                ///< pixels to either side of a point
  float least_slope = 0.0F;     ///< gradient units
  float least_cosine = 0.766F;  ///< of the angle between gradient and normal: 40 degrees
  float reach = 2.5F;           ///< of Tukey's weights, level pixels
  EdgeSign sign = EdgeSign::kSame;
  bool holds_scale = false;
  bool holds_angle = false;
  double damping = 0.0;  ///< share of the points' weight by which free directions are held back
};

/// How well a pose fits.
struct TrackingFit {
  double coverage = 0.0;  ///< mean credit of visible points
  double visible = 0.0;   ///< share of the points
  double slope = 0.0;     ///< mean size, of the edges that fit
  double rms = 0.0;       ///< of their offsets, level pixels
  int num_found = 0;

  /// For ranking: what is hardly visible counts less.
  double Rank() const;
};

/// Measures along the normals at a pose.
void Measure(const EdgePoints& points, const GradientPlane& gradients, const LevelPose& pose,
             const TrackingStep& step, const MeasuredArrays& measured);

/// One step of robust least squares along the normals; the fit is that after the step, to first order.
/// Method: P. J. Besl, N. D. McKay, "A method for registration of 3-D shapes", IEEE Trans. Pattern Analysis and Machine
/// Intelligence 14(2), 1992, in the point-to-line form of Y. Chen, G. Medioni, "Object modelling by registration of multiple
/// range images", Image and Vision Computing 10(3), 1992; weights of J. W. Tukey's biweight.
TrackingFit Track(const EdgePoints& points, const GradientPlane& gradients,
                  const TrackingStep& step, TrackingBuffers& buffers, LevelPose& pose);

/// Covariance of (x, y, angle, scale) in scene pixels, from the scatter of the offsets at a pose.
std::array<double, 16> CovarianceAt(const EdgePoints& points, const GradientPlane& gradients,
                                    const TrackingStep& step, int level, TrackingBuffers& buffers,
                                    const LevelPose& pose);

}  // namespace orvandel::shape
