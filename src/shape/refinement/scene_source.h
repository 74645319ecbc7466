#pragma once

#include <vector>

#include "base/geometry.h"
#include "image/image_view.h"
#include "shape/refinement/float_image.h"
#include "shape/refinement/refinement_model.h"
#include "shape/refinement/strip_kernels.h"

namespace orvandel::shape {

/// Scene pixels that a strip is sampled from: the image's own, or means of 2^level x 2^level of them
/// around the part. Such a mean is what a camera with larger pixels would have seen, so scales above
/// 1.4 need no theory of their own.
struct SceneSource {
  ImageView scene;
  int level = 0;
  bool is_wide = false;  ///< sampled with the kernel of doubled width
  double offset = 0.0;   ///< subtracted from the samples, so that they keep more digits
  int left = 0;          ///< of the means, in pixels of the level
  int top = 0;
  FloatImage means;  ///< empty at level 0
};

/// A pose as it is seen at a level: the centre of level pixel i lies at 2^level (i + 1/2) - 1/2.
Similarity AtLevel(const Similarity& scene_from_pattern, int level);

/// Points the source at a level of the scene and makes its means.
///
/// @param margin_px  around the pattern's box, level pixels: how far the pose may still move.
/// @return           whether the source is large enough to be sampled.
bool OpenScene(const ImageView& scene, int level, const RefinementModel& model,
               const Similarity& scene_from_pattern, double margin_px, SceneSource& source);

/// Samples the scene at a strip's pixels: column kScene, and 1 or 0 in `inside`.
void SampleScene(const SceneSource& source, const Similarity& scene_from_pattern,
                 const StripKernels& kernels, const Strip& strip, float* values, float* inside);

/// Where the strip lies in the source's own pixels.
ImagePlace PlaceIn(const SceneSource& source, const Similarity& scene_from_pattern);

/// Pixels of the source that a strip's samples can come from.
struct SourceBox {
  int left = 0;
  int top = 0;
  int width = 0;  ///< not above 0 where there are none
  int height = 0;
};
SourceBox BoxInSource(const SceneSource& source, const Strip& strip,
                      const Similarity& scene_from_pattern);

}  // namespace orvandel::shape
