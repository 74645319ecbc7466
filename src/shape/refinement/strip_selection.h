#pragma once

#include <cstdint>
#include <vector>

#include "shape/refinement/float_image.h"
#include "shape/refinement/refinement_model.h"

namespace orvandel::shape {

/// Which pixels of a pattern belong to it: 1 or 0 for each.
using PixelSet = std::vector<std::uint8_t>;

struct StripSelection {
  double noise_deviation = 0.0;  ///< of the pattern image's pixels, grey levels
  double gradient_gain = 0.0;    ///< noise deviation of a gradient component, by that of a pixel
  double edge_width = 0.0;       ///< total blur, pixels: deviation of optics-free edges
  double half_width = 0.0;       ///< of the strip, pixels
  int margin = 0;                ///< to the image's border, pixels
};

/// Finds the edges of a smooth image and the pixels along them, and fills in all of `strip` but its
/// levels of blur; and of `preview`, one pixel in five of the strip, where that leaves enough.
///
/// @param belongs whole 3 x 3 neighbourhoods must, for a pixel to be taken.
void SelectStrip(const FloatImage& grey, const PixelSet& belongs, Point origin,
                 const StripSelection& selection, Strip& strip, Strip& preview);

}  // namespace orvandel::shape
