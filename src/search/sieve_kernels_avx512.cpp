// Compiled for AVX-512; called only where the processor has it.
#include "search/sieve_kernels.inc"

namespace orvandel {

SiftKernel Avx512SiftKernel();

SiftKernel Avx512SiftKernel() {
  return SiftBatch;
}

}  // namespace orvandel
