#include "image/partial_gradients.h"

#include <algorithm>

#include "image/row_kernels.h"

namespace orvandel {
namespace {

/// Rows that share a record of what has been made of them.
constexpr std::int32_t kBandRows = 16;

/// Columns are made in whole blocks of so many, so that a pose that moves a little needs no new ones.
constexpr std::int32_t kColumnBlock = 32;

}  // namespace

void PartialGradients::Start(const GreyPlane& plane) {
  grey_ = &plane;
  Start(plane.width, plane.height);
}

void PartialGradients::Start(const UnitImage& image) {
  grey_ = nullptr;
  image_ = image;
  Start(image.Width(), image.Height());
}

void PartialGradients::Start(std::int32_t width, std::int32_t height) {
  plane_.width = width;
  plane_.height = height;
  plane_.packed.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  made_.assign(static_cast<std::size_t>((height + kBandRows - 1) / kBandRows), {});
}

void PartialGradients::Make(const PixelBox& box) {
  const std::int32_t top = std::max(box.top, 0);
  const std::int32_t bottom = std::min(box.bottom, plane_.height);
  const std::int32_t left = std::max(box.left, 0) / kColumnBlock * kColumnBlock;
  const std::int32_t right =
      std::min((std::min(box.right, plane_.width) + kColumnBlock - 1) / kColumnBlock * kColumnBlock,
               plane_.width);
  if (top >= bottom || left >= right) return;
  for (std::int32_t band = top / kBandRows; band * kBandRows < bottom; ++band) {
    Columns& made = made_[static_cast<std::size_t>(band)];
    const std::int32_t first = band * kBandRows;
    const std::int32_t end = std::min(first + kBandRows, plane_.height);
    if (made.begin == made.end) {
      MakeRows(first, end, {left, right});
      made = {left, right};
      continue;
    }
    // What lies between is made, too, so that one stretch is left.
    if (left < made.begin) {
      MakeRows(first, end, {left, made.begin});
      made.begin = left;
    }
    if (right > made.end) {
      MakeRows(first, end, {made.end, right});
      made.end = right;
    }
  }
}

void PartialGradients::MakeRows(std::int32_t top, std::int32_t bottom, const Columns& columns) {
  const ImageRowKernels& kernels = ImageRowKernelsOf(ActiveSimdLevel());
  const auto width = static_cast<std::size_t>(plane_.width);
  // The outermost rows and columns have none.
  const Columns inner = {std::max(columns.begin, 1), std::min(columns.end, plane_.width - 1)};
  const std::int32_t first = std::max(top, 1);
  const std::int32_t last = std::min(bottom, plane_.height - 1);
  for (std::int32_t y = top; y < bottom; ++y) {
    std::int32_t* const row = plane_.packed.data() + static_cast<std::size_t>(y) * width;
    if (y < first || y >= last || inner.begin >= inner.end) {
      std::fill(row + columns.begin, row + columns.end, 0);
      continue;
    }
    if (columns.begin == 0) row[0] = 0;
    if (columns.end == plane_.width) row[width - 1] = 0;
    if (y == first) {
      FetchRow(y - 1, inner);
      FetchRow(y, inner);
    }
    FetchRow(y + 1, inner);
    kernels.gradient_row(FetchedRow(y - 1, inner.begin), FetchedRow(y, inner.begin),
                         FetchedRow(y + 1, inner.begin), inner.end - inner.begin,
                         row + inner.begin);
  }
}

/// Makes a row ready, with a column more to either side.
void PartialGradients::FetchRow(std::int32_t y, const Columns& columns) {
  if (grey_ != nullptr) return;
  auto& row = rows_[static_cast<std::size_t>(y) % rows_.size()];
  if (row.size() < static_cast<std::size_t>(plane_.width))
    row.resize(static_cast<std::size_t>(plane_.width));
  image_.CopyRow(y, columns.begin - 1, columns.end - columns.begin + 2,
                 row.data() + columns.begin - 1);
}

const std::uint16_t* PartialGradients::FetchedRow(std::int32_t y, std::int32_t column) const {
  if (grey_ != nullptr) return grey_->Row(y) + column;
  return rows_[static_cast<std::size_t>(y) % rows_.size()].data() + column;
}

}  // namespace orvandel
