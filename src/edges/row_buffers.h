#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "edges/row_kernels.h"

namespace orvandel {

/// The last four rows of something, padded as the row kernels want them: a gradient reads the rows
/// above and below its own, and its direction is wanted one row later.
template <typename T>
class RowRing {
 public:
  explicit RowRing(std::size_t width)
      : stride_(kRowPadding + (width + kBlock - 1) / kBlock * kBlock + kRowPadding),
        rows_(kNumRows * stride_) {}

  T* operator[](int y) {
    return rows_.data() + static_cast<std::size_t>(y) % kNumRows * stride_ + kRowPadding;
  }

 private:
  static constexpr std::size_t kNumRows = 4;
  std::size_t stride_;
  std::vector<T> rows_;
};

}  // namespace orvandel
