#pragma once

#include <memory>

#include "shape/model/shape_model.h"

/// The handle shares the learnt pattern, so that a search in progress or a result outlives it.
struct orv_pattern {
  std::shared_ptr<const orvandel::shape::ShapeModel> model;
};

namespace orvandel::api {

/// The origin of a pattern in pixels of its image.
inline Point OriginOf(const shape::ShapeModel& model) {
  return Point{(model.Width() - 1) / 2, (model.Height() - 1) / 2} + model.origin;
}

}  // namespace orvandel::api
