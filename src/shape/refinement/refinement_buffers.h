#pragma once

#include <array>
#include <vector>

#include "shape/refinement/light_variation.h"
#include "shape/refinement/refine_pose.h"
#include "shape/refinement/scene_source.h"
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
  MedianScratch medians;
  SceneSource source;

  void Resize(const Strip& strip);
  std::array<float*, kNumColumns> ColumnPointers();
};

}  // namespace orvandel::shape
