#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "shape/refinement/light_variation.h"
#include "shape/refinement/refine_pose.h"
#include "shape/refinement/scene_source.h"
#include "shape/refinement/shaped_blur.h"
#include "shape/refinement/stretch_fit.h"
#include "shape/refinement/stretch_sums.h"

namespace orvandel::shape {

struct RefinementWorkspace::Buffers {
  std::array<std::vector<float>, kNumColumns> columns;  ///< by Column, a value a strip pixel
  std::vector<float> inside;                            ///< 1 where the scene has the pixel, else 0
  std::vector<float> weights;
  std::vector<float> residuals;
  std::vector<StretchSums> sums;  ///< by stretch, as are the next three
  std::vector<int> num_pixels;    ///< in the scene
  std::vector<StretchFit> fits;
  std::vector<StretchLight> lights;
  std::array<std::vector<float>, kNumPoseColumns> influence;  ///< on the pose, of each strip pixel
  std::vector<float> strength;                                ///< of the noise at each strip pixel
  std::vector<std::array<double, kNumPoseColumns>> pulls;     ///< by stretch: of its residuals
  std::vector<float> cells;                                   ///< 0 between uses, as are the marks
  std::vector<std::uint8_t> marks;
  BlurKernel blur_kernel;
  FloatImage padded;
  FloatImage blurred;
  BlurLevel blurred_level;
  MedianScratch medians;
  SceneSource source;

  void Resize(const Strip& strip);
  void ResizeForCovariance(const Strip& strip);
  std::array<float*, kNumColumns> ColumnPointers();
};

}  // namespace orvandel::shape
