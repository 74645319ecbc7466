#pragma once

#include <cstddef>

namespace orvandel::bench {

/// Measures by how much the heap grows while this lives, at most. One at a time, and the program runs on
/// one thread meanwhile.
class HeapPeak {
 public:
  /// Whether this system's heap lets itself be watched; otherwise all peaks are 0.
  static bool IsMeasured();

  HeapPeak();
  ~HeapPeak();
  HeapPeak(const HeapPeak&) = delete;
  HeapPeak& operator=(const HeapPeak&) = delete;

  /// Bytes above what was in use at the beginning.
  std::size_t Bytes() const;
};

}  // namespace orvandel::bench
