#include "search/sieve_kernels.inc"

namespace orvandel {

#if defined(ORVANDEL_X86_LEVELS)
SiftKernel Avx2SiftKernel();
SiftKernel Avx512SiftKernel();

SiftKernel SiftKernelOf(SimdLevel level) {
  switch (level) {
    case SimdLevel::kBaseline:
      return SiftBatch;
    case SimdLevel::kAvx2:
      return Avx2SiftKernel();
    case SimdLevel::kAvx512:
      return Avx512SiftKernel();
  }
  return SiftBatch;
}
#else
SiftKernel SiftKernelOf(SimdLevel /*level*/) {
  return SiftBatch;
}
#endif

}  // namespace orvandel
