#pragma once

#include <vector>

#include "shape/model/shape_model.h"

namespace orvandel::shape {

/// How well chance imitates a pattern, by octaves of scale: the highest score that its search, with all
/// polarities, meets in images without the pattern.
std::vector<ChanceLevel> LearnChances(const ShapeModel& model);

}  // namespace orvandel::shape
