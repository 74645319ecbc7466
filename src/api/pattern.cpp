#include "api/pattern.h"

#include <memory>
#include <variant>

#include "api/errors.h"
#include "api/images.h"
#include "api/sized_structs.h"
#include "orvandel/orvandel.h"
#include "shape/learn_shape.h"

using orvandel::api::Guarded;
using orvandel::api::Require;

namespace {

orv_learn_options DefaultLearnOptions() {
  orv_learn_options options = {};
  options.struct_size = sizeof options;
  options.learns_chance = orvandel::shape::LearnOptions().learns_chance ? 1 : 0;
  return options;
}

orvandel::shape::LearnOptions Translated(const orv_learn_options& asked) {
  orvandel::shape::LearnOptions options;
  options.learns_chance = asked.learns_chance != 0;
  if (asked.has_origin != 0) options.origin = orvandel::Point{asked.origin_x, asked.origin_y};
  if (asked.mask != nullptr) {
    const orvandel::ImageView mask = orvandel::api::ViewOf(asked.mask, "");
    const auto* const bytes = std::get_if<orvandel::ImageView8>(&mask);
    Require(bytes != nullptr, "The mask must have 8 bits per pixel.");
    options.mask = *bytes;
  }
  return options;
}

int StatusOf(orvandel::shape::LearnStatus status) {
  using orvandel::shape::LearnStatus;
  switch (status) {
    case LearnStatus::kOk:
      return ORV_OK;
    case LearnStatus::kEmptyImage:
    case LearnStatus::kBadOptions:
      return ORV_INVALID_ARGUMENT;
    case LearnStatus::kNoEdges:
      return ORV_NO_EDGES;
  }
  return ORV_INTERNAL_ERROR;
}

}  // namespace

void orv_learn_options_init(orv_learn_options* options, size_t struct_size) {
  orvandel::api::InitSized(DefaultLearnOptions(), struct_size, options);
}

int orv_pattern_learn(const orv_image* image, const orv_learn_options* options,
                      orv_pattern** pattern) {
  return Guarded([&] {
    Require(pattern != nullptr, "There is no place for the new pattern: the pointer is null.");
    *pattern = nullptr;
    const orvandel::ImageView view = orvandel::api::ViewOf(image, "The pattern image is null.");
    const orv_learn_options asked = orvandel::api::ReadSized(options, DefaultLearnOptions());
    auto learnt = orvandel::shape::LearnShape(view, Translated(asked));
    if (const int status = StatusOf(learnt.status); status != ORV_OK) {
      throw orvandel::api::Failure{status, learnt.message.data()};
    }
    *pattern = new orv_pattern{std::move(learnt.model)};
  });
}

void orv_pattern_destroy(orv_pattern* pattern) {
  delete pattern;
}

int orv_pattern_get_info(const orv_pattern* pattern, orv_pattern_info* info) {
  return Guarded([&] {
    Require(pattern != nullptr, "The pattern is null.");
    const orvandel::shape::ShapeModel& model = *pattern->model;
    const orvandel::Point origin = orvandel::api::OriginOf(model);
    orv_pattern_info known = {};
    known.width = model.image.width;
    known.height = model.image.height;
    known.origin_x = origin.x;
    known.origin_y = origin.y;
    known.num_edge_points = static_cast<int32_t>(model.levels.front().all.size);
    orvandel::api::WriteSized(known, info);
  });
}
