#pragma once

#include <cstdint>
#include <vector>

#include "shape/model/shape_model.h"

namespace orvandel::shape {

/// Synthetic images in which a pattern is not, to learn how well chance imitates it.
inline constexpr std::int32_t kTextureWidth = 640;
inline constexpr std::int32_t kTextureHeight = 480;

/// Discs, ellipses and bars of all sizes and greys lying one over the other, with soft edges and some noise: edges,
/// corners and junctions as photographs of things have them. The same for all patterns; 8 bits.
/// Method: G. Matheron's dead leaves model, with sizes by a power law as in A. B. Lee, D. Mumford, J. Huang, "Occlusion models
/// for natural images", International Journal of Computer Vision 41, 2001.
PatternImage MakeDeadLeaves(std::uint64_t seed);

/// Tiles cut from the pattern, a quarter of its side each, laid in random order, rotated by quarters and mirrored: the
/// pattern's own details in wrong places.
PatternImage MakeMosaic(const PatternImage& pattern, std::uint64_t seed);

}  // namespace orvandel::shape
