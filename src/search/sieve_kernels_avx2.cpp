// Compiled for AVX2; called only where the processor has it.
#include "search/sieve_kernels.inc"

namespace orvandel {

SiftKernel Avx2SiftKernel();

SiftKernel Avx2SiftKernel() {
  return SiftBatch;
}

}  // namespace orvandel
