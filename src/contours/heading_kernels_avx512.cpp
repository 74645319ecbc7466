// Compiled for AVX-512; called only where the processor has it.
#include "contours/heading_kernels.inc"

namespace orvandel {

HeadingKernel Avx512HeadingKernel();

HeadingKernel Avx512HeadingKernel() {
  return FindHeadings;
}

}  // namespace orvandel
