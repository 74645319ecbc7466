// Compiled for AVX2; called only where the processor has it.
#include "edges/row_kernels.inc"

namespace orvandel {

const RowKernels& Avx2RowKernels();

const RowKernels& Avx2RowKernels() {
  return kKernels;
}

}  // namespace orvandel
