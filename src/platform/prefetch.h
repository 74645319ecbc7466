#pragma once

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

namespace orvandel {

/// Asks for the cache line of an address that will be written soon; a hint, without effect on results.
inline void PrefetchForWrite(const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address, 1);
#elif defined(_MSC_VER) && (defined(_M_X64) || defined(_M_IX86))
  _m_prefetchw(address);
#else
  static_cast<void>(address);
#endif
}

/// The same for one that will be read soon.
inline void PrefetchForRead(const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#elif defined(_MSC_VER) && (defined(_M_X64) || defined(_M_IX86))
  _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
#else
  static_cast<void>(address);
#endif
}

}  // namespace orvandel
