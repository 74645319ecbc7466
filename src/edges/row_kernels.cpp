#include "edges/row_kernels.inc"

namespace orvandel {

#if defined(ORVANDEL_X86_LEVELS)
const RowKernels& Avx2RowKernels();
const RowKernels& Avx512RowKernels();

const RowKernels& RowKernelsOf(SimdLevel level) {
  switch (level) {
    case SimdLevel::kBaseline:
      return kKernels;
    case SimdLevel::kAvx2:
      return Avx2RowKernels();
    case SimdLevel::kAvx512:
      return Avx512RowKernels();
  }
  return kKernels;
}
#else
const RowKernels& RowKernelsOf(SimdLevel /*level*/) {
  return kKernels;
}
#endif

}  // namespace orvandel
