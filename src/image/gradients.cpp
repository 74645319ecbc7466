#include "image/gradients.h"

#include <algorithm>

#include "image/row_kernels.h"

namespace orvandel {
void ComputeGradients(const GreyPlane& plane, GradientPlane& gradients) {
  gradients.width = plane.width;
  gradients.height = plane.height;
  gradients.packed.resize(plane.pixels.size());
  if (plane.width < 3 || plane.height < 3) {
    std::fill(gradients.packed.begin(), gradients.packed.end(), 0);
    return;
  }
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  const auto width = static_cast<std::size_t>(plane.width);
  std::int32_t* row = gradients.packed.data();
  std::fill_n(row, width, 0);
  for (std::int32_t y = 1; y + 1 < plane.height; ++y) {
    row += width;
    kernels.gradient_row(plane.Row(y - 1) + 1, plane.Row(y) + 1, plane.Row(y + 1) + 1,
                         plane.width - 2, row + 1);
    row[0] = row[width - 1] = 0;
  }
  std::fill_n(row + width, width, 0);
}

}  // namespace orvandel
