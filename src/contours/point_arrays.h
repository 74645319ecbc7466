#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <span>

#include "orvandel/classic/crawler.h"

namespace orvandel {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

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

/// The arrays that a contour set owns, while they are being made: all or none reaches the set.
struct PointArrays {
  HeapArray<double> x;
  HeapArray<double> y;
  HeapArray<double> g;
  HeapArray<std::uint32_t> f;

  /// Arrays of `count` zeros each; false when memory cannot be had, with nothing kept.
  bool Allocate(std::int64_t count);
  /// The same without a content.
  bool AllocateUnset(std::int64_t count);
  /// Frees the set's four point arrays and hands these over.
  void MoveInto(CCrawler& set);
};

/// Frees all five arrays of a set and leaves the pointers null.
void FreeArrays(CCrawler& set);

/// The records of a set; none when it has no arrays, whatever its counts say.
std::span<ContourRecord> Records(CCrawler& set);

/// Number of points that the arrays hold; 0 when the set has none, whatever its counts say.
std::int32_t NumPoints(const CCrawler& set);

inline CCrawler& SetOf(void* handle) {
  return *static_cast<CCrawler*>(handle);
}

}  // namespace orvandel
