#include "contours/heading_kernels.inc"

namespace orvandel {

#if defined(ORVANDEL_X86_LEVELS)
HeadingKernel Avx2HeadingKernel();
HeadingKernel Avx512HeadingKernel();

HeadingKernel HeadingKernelOf(SimdLevel level) {
  switch (level) {
    case SimdLevel::kBaseline:
      return FindHeadings;
    case SimdLevel::kAvx2:
      return Avx2HeadingKernel();
    case SimdLevel::kAvx512:
      return Avx512HeadingKernel();
  }
  return FindHeadings;
}
#else
HeadingKernel HeadingKernelOf(SimdLevel /*level*/) {
  return FindHeadings;
}
#endif

}  // namespace orvandel
