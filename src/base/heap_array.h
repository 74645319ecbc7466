#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

namespace orvandel {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

/// An array of the C heap, so that the classic objects can own it as a bare pointer.
template <typename T>
using HeapArray = std::unique_ptr<T[], FreeDeleter>;

/// Elements to ask the heap for: at least 1, so that null means failure; 0 for a negative count and for one
/// beyond the address space.
template <typename T>
std::size_t NumToAllocate(std::int64_t count) {
  constexpr std::int64_t kMost = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T);
  if (count < 0 || count > kMost) return 0;
  return count > 0 ? static_cast<std::size_t>(count) : 1;
}

/// An array of zeros, by calloc, so that a huge one costs nothing until it is written.
/// Null for a negative count and when memory cannot be had; never null for 0 elements otherwise.
template <typename T>
HeapArray<T> AllocateZeros(std::int64_t count) {
  const std::size_t elements = NumToAllocate<T>(count);
  if (elements == 0) return nullptr;
  return HeapArray<T>(static_cast<T*>(std::calloc(elements, sizeof(T))));
}

/// The same without a content.
template <typename T>
HeapArray<T> AllocateUnset(std::int64_t count) {
  const std::size_t elements = NumToAllocate<T>(count);
  if (elements == 0) return nullptr;
  return HeapArray<T>(static_cast<T*>(std::malloc(elements * sizeof(T))));
}

}  // namespace orvandel
