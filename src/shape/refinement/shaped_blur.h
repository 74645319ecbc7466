#pragma once

#include <vector>

#include "shape/refinement/float_image.h"
#include "shape/refinement/refinement_model.h"

namespace orvandel::shape {

/// The blur of a scene against the pattern image at the pose's scale, pattern pixels squared: the second
/// moments of its kernel are (round + axis, diagonal; diagonal, round - axis).
struct BlurMoments {
  double round = 0.0;
  double axis = 0.0;
  double diagonal = 0.0;
};

/// A line's length and direction from the moments: it has all that differs between the directions, and
/// the rest is round.
struct LineBlur {
  double length = 0.0;  ///< pattern pixels
  double cosine = 1.0;  ///< of the direction in the pattern
  double sine = 0.0;
  double rest = 0.0;  ///< variance in every direction
};
LineBlur LineOf(const BlurMoments& moments);

/// Radius of the disk of a variance.
double DiskRadiusOf(double variance);

/// A kernel over whole pixels, `reach` to all sides.
struct BlurKernel {
  int reach = 0;
  std::vector<float> weights;  ///< row by row; they add up to 1
  std::vector<float> scratch;

  float& At(int x, int y) {
    return weights[static_cast<std::size_t>((y + reach) * (2 * reach + 1) + x + reach)];
  }
};

/// Makes the kernel of a disk or line, with a round blur besides: `sampling`, by which the scene's
/// sampling is softer than the pattern's.
void MakeDiskKernel(double variance, double sampling, BlurKernel& kernel);
void MakeLineKernel(const LineBlur& line, double sampling, BlurKernel& kernel);

/// Applies a kernel to an image whose border values go on outside.
void Blur(const std::vector<float>& image, int width, int height, const BlurKernel& kernel,
          FloatImage& padded, FloatImage& blurred);

}  // namespace orvandel::shape
