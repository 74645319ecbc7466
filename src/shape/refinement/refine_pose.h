#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "base/geometry.h"
#include "image/image_view.h"
#include "shape/refinement/refinement_model.h"

namespace orvandel::shape {

/// Which sign of contrast, against the pattern's, an edge in the scene may have.
enum class EdgePolarity : std::uint8_t {
  kSame,
  kReversed,
  kEither,      ///< one of the two, for all edges
  kPerStretch,  ///< each stretch of the outline as it likes
};

/// What to fit and how good the start is.
struct RefinementOptions {
  EdgePolarity polarity = EdgePolarity::kSame;
  bool fit_angle = true;
  bool fit_scale = true;
  /// By how much the start's corners may be off, scene pixels. Above about one pixel the fit begins
  /// in a coarser image, which costs some time.
  double start_error_px = 1.0;
  /// Standard deviation of the start's corners, scene pixels, as the search knows it; 0: not known.
  /// It decides where the fit is doubtful, and is the covariance of a start that is returned.
  double start_deviation_px = 0.0;
};

/// By what the scene is less sharp than the pattern image at the pose's scale.
enum class BlurShape : std::uint8_t {
  kRound,  ///< Gaussian
  kDisk,   ///< out of focus
  kLine,   ///< moved during the exposure
};

struct ExtraBlur {
  BlurShape shape = BlurShape::kRound;
  /// Of the round part, scene pixels squared in each direction. Negative where the scene is the
  /// sharper one.
  double variance_px2 = 0.0;
  double radius_px = 0.0;  ///< of the disk
  double length_px = 0.0;  ///< of the line
  double direction = 0.0;  ///< of the line, radians in (-pi/2, pi/2], clockwise from x
};

/// What is returned, and why.
enum class RefinementOutcome : std::uint8_t {
  kRefined,
  kTooFewPixels,   ///< start: too little of the outline lies in the scene, or the model is empty
  kNotDetermined,  ///< start: the image does not say enough about the pose
  kTooFar,         ///< start: the fit went further off than a start can be
  kLessSupport,    ///< start: more of the outline shows the pattern there than at the fit
  kLessCertain,    ///< start: the fit is doubtful, and less certain than the start
};

/// Covariance of (x, y, angle, scale), row by row: pixels, radians, 1. What was held has variance 0, an
/// angle that the pattern does not tell an infinite one; both have covariances 0.
using PoseCovariance = std::array<double, 16>;

struct Refinement {
  RefinementOutcome outcome = RefinementOutcome::kTooFewPixels;
  Similarity scene_from_pattern;  ///< the start itself unless the outcome is kRefined
  PoseCovariance covariance = {};
  double rms_residual = 0.0;  ///< of the weighted pixels, grey levels
  double explained_share =
      0.0;            ///< of the scene's variation along the outline, noise left out; 0 to 1
  double gain = 0.0;  ///< scene contrast over pattern contrast; negative: inverted
  double bias = 0.0;  ///< grey = gain * pattern grey + bias
  ExtraBlur blur;
};

/// All buffers of a refinement. One may be used again for any model and scene, by one thread at a
/// time; it changes no result. Memory is only taken when larger ones come along.
class RefinementWorkspace {
 public:
  RefinementWorkspace();
  ~RefinementWorkspace();
  RefinementWorkspace(RefinementWorkspace&&) noexcept;
  RefinementWorkspace& operator=(RefinementWorkspace&&) noexcept;

  struct Buffers;
  Buffers& Get() { return *buffers_; }

 private:
  std::unique_ptr<Buffers> buffers_;
};

/// Says in a covariance that the angle is not determined.
void LeaveAngleOpen(PoseCovariance& covariance);

/// Improves a pose to what the pixels' noise allows, by least squares on the grey values of all
/// pixels along the pattern's edges. docs/refinement.md derives the method and its limits.
///
/// Throws std::bad_alloc alone. A start that is not finite, or makes the part a few pixels small, comes
/// back as kTooFewPixels.
Refinement RefinePose(const RefinementModel& model, const ImageView& scene, const Similarity& start,
                      const RefinementOptions& options, RefinementWorkspace& workspace);

}  // namespace orvandel::shape
