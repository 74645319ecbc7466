#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "base/geometry.h"
#include "image/image_view.h"
#include "shape/model/shape_model.h"

namespace orvandel::shape {

struct LearnOptions {
  /// Which point of the pattern image a pose says the place of, in pixels of the pattern image; its
  /// centre when not set.
  std::optional<Point> origin;
  /// As large as the pattern image: what is not 0 belongs to the pattern. Empty: everything does.
  ImageView8 mask;
  /// Whether to learn how well chance imitates the pattern, which takes most of the time. Without, scores are not set
  /// against it, and the default threshold is too low for simple patterns.
  bool learns_chance = true;
};

enum class LearnStatus : std::uint8_t { kOk, kEmptyImage, kBadOptions, kNoEdges };

struct LearnResult {
  LearnStatus status = LearnStatus::kOk;
  std::string_view message;                 ///< a sentence where the status is not kOk
  std::shared_ptr<const ShapeModel> model;  ///< null where the status is not kOk
};

/// Learns a pattern from an image of it. The pixels are copied.
LearnResult LearnShape(const ImageView& image, const LearnOptions& options = {});

}  // namespace orvandel::shape
