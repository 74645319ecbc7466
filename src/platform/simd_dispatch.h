#pragma once

#include "platform/simd_level.h"

/// How hot loops reach the processor's vector instructions. A stage has
///   - a header NAME.h with a struct of function pointers, the table of its kernels, say `RowKernels`, and
///     ORVANDEL_DECLARE_KERNELS(RowKernels) in namespace orvandel;
///   - one kernel file NAME.simd.h that defines the loops in an anonymous namespace and, in
///     namespace orvandel::ORVANDEL_SIMD_NAMESPACE, `const RowKernels kRowKernels = {...}`.
/// The build compiles the kernel file once a level, into a namespace of that level's own
/// (orvandel_add_kernels in cmake/OrvandelSimd.cmake). Callers ask `RowKernelsOf(ActiveSimdLevel())`.
///
/// A kernel object exports its table and nothing else. So no inline function or template of another
/// header may be called there: the linker keeps one copy of those, and may keep the one that a plain
/// processor cannot run.
///
/// Kernels that use intrinsics ask the compiler's own macros (__AVX2__ and the like) for the level.

#if defined(ORVANDEL_X86_LEVELS)
#define ORVANDEL_DECLARE_KERNELS(Table)                           \
  namespace simd_baseline {                                       \
  extern const Table k##Table;                                    \
  }                                                               \
  namespace simd_avx2 {                                           \
  extern const Table k##Table;                                    \
  }                                                               \
  namespace simd_avx512 {                                         \
  extern const Table k##Table;                                    \
  }                                                               \
  inline const Table& Table##Of(SimdLevel level) {                \
    return level == SimdLevel::kAvx512 ? simd_avx512::k##Table    \
           : level == SimdLevel::kAvx2 ? simd_avx2::k##Table      \
                                       : simd_baseline::k##Table; \
  }
#else
#define ORVANDEL_DECLARE_KERNELS(Table)                \
  namespace simd_baseline {                            \
  extern const Table k##Table;                         \
  }                                                    \
  inline const Table& Table##Of(SimdLevel /*level*/) { \
    return simd_baseline::k##Table;                    \
  }
#endif
