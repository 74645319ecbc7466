// Compiled for AVX2; called only where the processor has it.
#include "contours/heading_kernels.inc"

namespace orvandel {

HeadingKernel Avx2HeadingKernel();

HeadingKernel Avx2HeadingKernel() {
  return FindHeadings;
}

}  // namespace orvandel
