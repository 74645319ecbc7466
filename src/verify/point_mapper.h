#pragma once

#include "base/geometry.h"
#include "base/rounding.h"
#include "base/trigonometry.h"

namespace orvandel {

struct PixelIndex {
  int row;
  int column;
};

/// Lays pattern points on pixels of a scene. The order of its operations is part of all scores.
class PointMapper {
 public:
  explicit PointMapper(const Similarity& scene_from_pattern)
      : PointMapper(scene_from_pattern, SinCosOf(scene_from_pattern.angle)) {}

  /// @param sin_cos  of the angle, where it is known already.
  PointMapper(const Similarity& scene_from_pattern, SinCos sin_cos)
      : tx_(scene_from_pattern.x),
        ty_(scene_from_pattern.y),
        cosine_(sin_cos.cosine * scene_from_pattern.scale),
        sine_(sin_cos.sine * scene_from_pattern.scale) {}

  /// @param p  measured from the pattern's reference point.
  PixelIndex Map(Point p) const {
    return {TruncateToInt32(ty_ + p.x * sine_ + p.y * cosine_),
            TruncateToInt32(tx_ + p.x * cosine_ - p.y * sine_)};
  }

  double tx() const { return tx_; }
  double ty() const { return ty_; }
  double cosine() const { return cosine_; }  ///< times the scale
  double sine() const { return sine_; }      ///< times the scale

 private:
  double tx_;
  double ty_;
  double cosine_;
  double sine_;
};

}  // namespace orvandel
