#include "shape/learn_shape.h"

#include <cmath>
#include <utility>

#include "shape/chance_learning.h"
#include "shape/model/build_model.h"

namespace orvandel::shape {
namespace {

struct ImageSize {
  std::int32_t width = 0;
  std::int32_t height = 0;
};

ImageSize SizeOf(const ImageView& image) {
  return std::visit(
      [](const auto& view) {
        return view.IsEmpty() ? ImageSize{} : ImageSize{view.width, view.height};
      },
      image);
}

}  // namespace

LearnResult LearnShape(const ImageView& image, const LearnOptions& options) {
  const ImageSize size = SizeOf(image);
  if (size.width == 0)
    return {LearnStatus::kEmptyImage, "The pattern image has no pixels.", nullptr};
  if (!options.mask.IsEmpty() &&
      (options.mask.width != size.width || options.mask.height != size.height))
    return {LearnStatus::kBadOptions, "The mask is not as large as the pattern image.", nullptr};
  if (options.origin && !(std::isfinite(options.origin->x) && std::isfinite(options.origin->y)))
    return {LearnStatus::kBadOptions, "The origin is not a finite position.", nullptr};
  std::optional<ShapeModel> model = BuildModel(image, options.mask, options.origin);
  if (!model) {
    return {
        LearnStatus::kNoEdges,
        "The pattern image has too few edges to be found by: it is flat, too small, or all masked.",
        nullptr};
  }
  if (options.learns_chance) model->chances = LearnChances(*model);
  model->refinement =
      LearnRefinementModel(image, options.mask, {0.5 * (size.width - 1), 0.5 * (size.height - 1)});
  return {LearnStatus::kOk, {}, std::make_shared<const ShapeModel>(std::move(*model))};
}

}  // namespace orvandel::shape
