#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "image/image_view.h"

namespace orvandel::shape {

/// Of values that are rounded to whole grey levels, as an image's are.
inline constexpr double kRoundingVariance = 1.0 / 12.0;

/// Values of the pattern image at the strip's pixels after a Gaussian blur and sampling with the cubic
/// B-spline, and the derivatives of that smooth function. Grey levels and pattern pixels.
struct BlurLevel {
  double variance = 0.0;  ///< of the Gaussian, as measured on its taps, pattern pixels squared
  std::vector<float> value;
  std::vector<float> dx;
  std::vector<float> dy;
  std::vector<float> dxx;
  std::vector<float> dxy;
  std::vector<float> dyy;
};

/// Strip pixels along one piece of the outline: entries `first` to `first + count` of the arrays.
/// Counts are multiples of kStripBlock; the entries that fill up the last block have presence 0.
struct Stretch {
  int first = 0;
  int count = 0;
  bool at_mask_border = false;  ///< beside pixels that do not belong to the pattern
};

inline constexpr int kStripBlock = 8;

/// From this thinning on hardly two strip pixels are made of the same pixels of an image.
inline constexpr int kSparseThinning = 5;

/// What a strip pixel is good for in an estimate of noise.
enum class Steepness : std::uint8_t { kMiddle, kFlatDark, kFlatBright, kSteep };

/// The pixels within `half_width` of the edges, sorted by stretch, at several levels of blur.
struct Strip {
  std::vector<float> x;  ///< pattern pixels from the origin
  std::vector<float> y;
  std::vector<std::int32_t> column;  ///< in the pattern image
  std::vector<std::int32_t> row;
  std::vector<float> presence;  ///< 1, or 0 for an entry that only fills up
  std::vector<Steepness> steepness;
  std::vector<Stretch> stretches;
  std::vector<BlurLevel> levels;  ///< by rising variance; at least two unless the strip is empty
  /// The same for scenes without blur, at several scales, that are sampled with the kernel of doubled width.
  std::vector<BlurLevel> wide_levels;
  /// Nine a pixel: which errors of the pattern image are in the 3 x 3 pixels around, by their number below
  /// num_errors. Pixels that share a rounding error have one number. Empty where that says nothing.
  std::vector<std::int32_t> errors;
  int num_errors = 0;
  float left = 0.0F;  ///< least and largest x and y
  float top = 0.0F;
  float right = 0.0F;
  float bottom = 0.0F;
  int num_pixels = 0;  ///< with presence 1
  int thinning = 1;    ///< one pixel in that many was taken

  int Size() const { return static_cast<int>(x.size()); }
};

/// Strips for a scene that is as sharp as the pattern, softer, and much softer.
inline constexpr int kNumStrips = 3;

/// What refinement knows of a pattern. Immutable once learnt; threads may share it.
struct RefinementModel {
  int width = 0;  ///< of the pattern image
  int height = 0;
  Point origin;                    ///< in the pattern image
  double radius = 1.0;             ///< half the diagonal of the learnt region, pattern pixels
  double noise_variance = 0.0;     ///< of the pattern image's pixels, rounding included
  bool tells_angle = true;         ///< not so for a full circle
  bool has_aliased_edges = false;  ///< as sharp as pixels make them without optics
  int grey_offset = 0;             ///< what was subtracted from its grey values
  std::vector<float> image;        ///< the pattern image less the offset, row by row
  std::array<Strip, kNumStrips> strips;
  /// A few pixels of each strip, enough to tell light, noise and kernel by; empty for small strips.
  std::array<Strip, kNumStrips> previews;
};

/// Learns what refinement needs.
///
/// @param mask    of the pattern image's size, 0 where a pixel does not belong; empty: all belong.
/// @param origin  in the pattern image; poses say where it lies in the scene.
/// An image without edges gives a model with empty strips. Throws std::bad_alloc alone.
RefinementModel LearnRefinementModel(const ImageView& pattern, const ImageView8& mask,
                                     Point origin);

/// The middle of an image, the default origin.
template <typename Pixel>
Point CentreOf(const ImageViewOf<Pixel>& image) {
  return {0.5 * (image.width - 1), 0.5 * (image.height - 1)};
}

}  // namespace orvandel::shape
