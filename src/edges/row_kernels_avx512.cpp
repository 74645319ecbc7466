// Compiled for AVX-512; called only where the processor has it.
#include "edges/row_kernels.inc"

namespace orvandel {

const RowKernels& Avx512RowKernels();

const RowKernels& Avx512RowKernels() {
  return kKernels;
}

}  // namespace orvandel
