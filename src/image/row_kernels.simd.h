// Kernels of pyramid and gradients, as loops that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h).

#include "image/row_kernels.h"

namespace orvandel {
namespace {

void WidenRow(const std::uint8_t* from, std::int32_t width, std::uint16_t* to) {
  for (std::int32_t x = 0; x < width; ++x)
    to[x] = static_cast<std::uint16_t>(from[x] << 4);
}

void HalveRows(const std::uint16_t* upper, const std::uint16_t* lower, std::int32_t width,
               std::uint16_t* to) {
  for (std::int32_t x = 0; x < width; ++x) {
    // Four values of 12 bits fit.
    const auto sum = static_cast<std::uint16_t>(upper[2 * x] + upper[2 * x + 1] + lower[2 * x] +
                                                lower[2 * x + 1] + 2);
    to[x] = static_cast<std::uint16_t>(sum >> 2);
  }
}

/// Columns whose differences fill the widest register.
constexpr std::int32_t kGradientBlock = 32;

/// Gradients of up to kGradientBlock columns. They are packed in a loop of their own, whose numbers
/// are twice as wide: in a single loop, clang takes only half a register of differences at once.
inline void GradientBlock(const std::uint16_t* above, const std::uint16_t* centre,
                          const std::uint16_t* below, std::int32_t width, std::int32_t* packed) {
  const std::uint16_t* const above_left = above - 1;
  const std::uint16_t* const centre_left = centre - 1;
  const std::uint16_t* const below_left = below - 1;
  std::uint16_t gx[kGradientBlock];
  std::uint16_t gy[kGradientBlock];
  for (std::int32_t x = 0; x < width; ++x) {
    const auto falling = static_cast<std::int16_t>(below[x + 1] - above_left[x]);
    const auto rising = static_cast<std::int16_t>(above[x + 1] - below_left[x]);
    const auto across = static_cast<std::int16_t>(centre[x + 1] - centre_left[x]);
    const auto down = static_cast<std::int16_t>(below[x] - above[x]);
    gx[x] = static_cast<std::uint16_t>(falling + rising + 2 * across);
    gy[x] = static_cast<std::uint16_t>(falling - rising + 2 * down);
  }
  for (std::int32_t x = 0; x < width; ++x)
    packed[x] = static_cast<std::int32_t>(static_cast<std::uint32_t>(gx[x]) |
                                          static_cast<std::uint32_t>(gy[x]) << 16);
}

void GradientRow(const std::uint16_t* above, const std::uint16_t* centre,
                 const std::uint16_t* below, std::int32_t count, std::int32_t* packed) {
  if (count < kGradientBlock) {
    GradientBlock(above, centre, below, count, packed);
    return;
  }
  // The last block overlaps the one before it.
  const std::int32_t last = count - kGradientBlock;
  for (std::int32_t x = 0; x < last; x += kGradientBlock)
    GradientBlock(above + x, centre + x, below + x, kGradientBlock, packed + x);
  GradientBlock(above + last, centre + last, below + last, kGradientBlock, packed + last);
}

void DifferenceRow(const std::uint16_t* above, const std::uint16_t* centre,
                   const std::uint16_t* below, std::int32_t width, std::uint16_t* sizes) {
  for (std::int32_t x = 1; x + 1 < width; ++x) {
    const std::int32_t corners = above[x - 1] + above[x + 1] + below[x - 1] + below[x + 1];
    const std::int32_t sides = above[x] + below[x] + centre[x - 1] + centre[x + 1];
    const std::int32_t difference = corners - 2 * sides + 4 * centre[x];
    sizes[x - 1] = static_cast<std::uint16_t>(difference < 0 ? -difference : difference);
  }
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const ImageRowKernels kImageRowKernels = {WidenRow, HalveRows, GradientRow, DifferenceRow};
}

}  // namespace orvandel
