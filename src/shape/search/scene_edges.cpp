#include "shape/search/scene_edges.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/nonzero_bytes.h"
#include "shape/search/response_kernels.h"

namespace orvandel::shape {
namespace {

/// Direction of a gradient that is not 0, in codes. The arc tangent of a ratio r up to 1 is close to
/// r (1 - 0.2714 (r - 1) ...); the polynomial is good to 0.3 degrees, a code is 5.6.
std::uint16_t DirectionCode(std::int32_t packed) {
  const int gx = GradientX(packed);
  const int gy = GradientY(packed);
  const int across = std::abs(gx);
  const int down = std::abs(gy);
  const float ratio =
      static_cast<float>(std::min(across, down)) / static_cast<float>(std::max(across, down));
  const float radians = ratio * (0.9724f - 0.1919f * ratio * ratio);
  constexpr float kCodesPerRadian = 10.185916f;  // 64 / (2 pi)
  int code = static_cast<int>(radians * kCodesPerRadian + 0.5f);
  if (down > across) code = kDirectionCodes / 4 - code;
  if (gx < 0) code = kDirectionCodes / 2 - code;
  if (gy < 0) code = kDirectionCodes - code;
  return static_cast<std::uint16_t>(code % kDirectionCodes);
}

}  // namespace

void FindSceneEdges(const GradientPlane& gradients, float least_strength, SceneEdgeBuffers& buffers,
                    std::vector<SceneEdge>& edges) {
  edges.clear();
  if (gradients.width < 3 || gradients.height < 3) return;
  const ResponseKernels& kernels = ResponseKernelsOf(ActiveSimdLevel());
  const auto least_square = static_cast<std::int32_t>(least_strength * least_strength);
  const auto width = static_cast<std::size_t>(gradients.width);
  buffers.squares.resize(3 * width);
  buffers.marks.resize(width);
  const auto squares = [&buffers, width](std::int32_t y) {
    return buffers.squares.data() + static_cast<std::size_t>(y % 3) * width;
  };
  kernels.square_row(gradients.Row(0), gradients.width, squares(0));
  kernels.square_row(gradients.Row(1), gradients.width, squares(1));
  for (std::int32_t y = 1; y + 1 < gradients.height; ++y) {
    kernels.square_row(gradients.Row(y + 1), gradients.width, squares(y + 1));
    const std::int32_t* const row = gradients.Row(y);
    kernels.mark_peaks({squares(y - 1), squares(y), squares(y + 1)}, row, gradients.width,
                       least_square, buffers.marks.data());
    ForEachNonzero(buffers.marks.data(), width, [&](std::size_t x) {
      edges.push_back(
          {static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(y), DirectionCode(row[x])});
    });
  }
}

}  // namespace orvandel::shape
