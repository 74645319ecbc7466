#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

#include "base/geometry.h"
#include "image/image_view.h"
#include "shape/refinement/refinement_model.h"

namespace orvandel::shape {

/// An edge point of a pattern.
struct EdgePoint {
  Point at;               ///< pattern pixels from the pattern's centre
  Point normal;           ///< unit length, from dark to bright
  double strength = 0.0;  ///< slope across the edge, gradient units of the factor's image
};

/// Edge points as arrays, for loops over many. Arrays are as long as `size` rounded up to whole blocks;
/// the points beyond `size` are copies of the last one and count for nothing.
struct EdgePoints {
  static constexpr std::size_t kBlock = 16;

  std::size_t size = 0;
  std::vector<float> x;
  std::vector<float> y;
  std::vector<float> normal_x;
  std::vector<float> normal_y;
  std::vector<float> strength;
};

EdgePoints ToArrays(const std::vector<EdgePoint>& points);

/// What a pattern looks like when it is seen `factor` times smaller: edges that a fine image shows
/// melt together in a coarse one, so each half octave has points of its own.
struct ModelLevel {
  double factor = 1.0;
  EdgePoints coarse;  ///< few, evenly spread: for the exhaustive search
  EdgePoints fine;    ///< for tracking
  EdgePoints all;     ///< for the last fit and the score
};

/// Chance score of a pattern in images without it, in the octave from a scale on.
struct ChanceLevel {
  double scale = 1.0;
  double score = 0.0;
};

/// A copy of the learnt image, rows without gaps.
struct PatternImage {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::variant<std::vector<std::uint8_t>, std::vector<std::uint16_t>> pixels;

  ImageView View() const;
};

/// A learnt pattern. Never changed after learning, so threads may share it.
///
/// Inside, positions are measured from the centre of the pattern image, ((w - 1) / 2, (h - 1) / 2).
struct ShapeModel {
  PatternImage image;
  Point origin;                      ///< of the poses reported, from the pattern's centre
  double radius = 0.0;               ///< of the farthest edge point
  double reach = 0.0;                ///< of the farthest edge point of any level
  std::vector<Point> hull;           ///< convex outline of the edge points, clockwise on the screen
  std::vector<ModelLevel> levels;    ///< by rising factor: 1, 1.41, 2 ...; never empty
  std::vector<ChanceLevel> chances;  ///< by rising scale
  RefinementModel refinement;        ///< its origin is the pattern's centre

  double Width() const { return image.width; }
  double Height() const { return image.height; }

  /// The level whose factor is nearest to `factor`, by ratio.
  const ModelLevel& LevelOf(double factor) const;

  /// Chance score for a search over these scales.
  double ChanceOf(double min_scale, double max_scale) const;
};

}  // namespace orvandel::shape
