// The rejection test's kernel, as loops that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h).

#include "verify/rejection_kernels.h"

namespace orvandel {
namespace {

std::uint32_t TestBatch(const PointBatch& batch, const MapFrame& frame, const std::uint32_t* masks,
                        const std::uint32_t* wanted, std::uint8_t* possible) {
  std::int32_t squares[kPointsPerBatch];
  for (std::size_t k = 0; k < kPointsPerBatch; ++k) {
    const double column = frame.tx + batch.dx[k] * frame.cosine - batch.dy[k] * frame.sine;
    const double row = frame.ty + batch.dx[k] * frame.sine + batch.dy[k] * frame.cosine;
    const bool inside = (column >= frame.first_column) & (column < frame.end_column) &
                        (row >= frame.first_row) & (row < frame.end_row);
    const auto x = static_cast<std::int32_t>(inside ? column : 0.0);
    const auto y = static_cast<std::int32_t>(inside ? row : 0.0);
    const std::int32_t square = frame.first_square + (y >> 1) * frame.stride + (x >> 1);
    squares[k] = inside ? square : frame.outside;
  }
  std::uint32_t shared[kPointsPerBatch];
  for (std::size_t k = 0; k < kPointsPerBatch; ++k)
    shared[k] = masks[squares[k]] & wanted[k];
  std::uint32_t num_possible = 0;
  for (std::size_t k = 0; k < kPointsPerBatch; ++k)
    num_possible += shared[k] != 0 ? 1 : 0;
  for (std::size_t k = 0; k < kPointsPerBatch; ++k)
    possible[k] = shared[k] != 0 ? 1 : 0;
  return num_possible;
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const RejectionKernels kRejectionKernels = {TestBatch};
}

}  // namespace orvandel
