#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "orvandel/classic/imgutil_i.h"

namespace {

constexpr std::uint64_t kAlignment = 64;  // the longest vector registers, and a cache line

std::uint64_t RoundUp(std::uint64_t bytes) {
  return (bytes + kAlignment - 1) / kAlignment * kAlignment;
}

/// One block holds everything: the record, its row table and the rows, each at a multiple of
/// `kAlignment`. Padding after the last row lets vector loads run over its end.
struct BlockLayout {
  BlockLayout(int width, int height)
      : stride(RoundUp(static_cast<std::uint64_t>(width))),
        pixels(sizeof(tImage) + sizeof(std::uint8_t*) * static_cast<std::uint64_t>(height)),
        // No overflow: width and height are below 2^31.
        size(pixels + kAlignment - 1 + stride * static_cast<std::uint64_t>(height)) {}

  std::uint64_t stride;
  std::uint64_t pixels;  // where they may start, before alignment
  std::uint64_t size;
};

std::uint8_t* Aligned(std::uint8_t* address) {
  const auto value = reinterpret_cast<std::uintptr_t>(address);
  return address + (RoundUp(value) - value);
}

void LayOutRows(tImage& image, std::uint8_t* block, const BlockLayout& layout) {
  std::uint8_t* next = Aligned(block + layout.pixels);
  for (int y = 0; y < image.height; ++y) {
    image.row[y] = next;
    next += layout.stride;
  }
}

}  // namespace

tImage* im_create(int type, int width, int height) {
  if (width < 1 || height < 1) return nullptr;
  const BlockLayout layout(width, height);
  if (layout.size > PTRDIFF_MAX) return nullptr;

  void* block = std::calloc(1, static_cast<std::size_t>(layout.size));
  if (block == nullptr) return nullptr;
  auto* image = static_cast<tImage*>(block);
  *image = {type, width, height, reinterpret_cast<std::uint8_t**>(image + 1)};
  LayOutRows(*image, static_cast<std::uint8_t*>(block), layout);
  return image;
}

tImage* im_dup(const tImage* image) {
  return image == nullptr ? nullptr : im_create(image->type, image->width, image->height);
}

tImage* im_duplicate(const tImage* image) {
  tImage* copy = im_dup(image);
  if (copy == nullptr) return nullptr;
  const auto num_bytes = static_cast<std::size_t>(copy->width);
  for (int y = 0; y < copy->height; ++y)
    std::memcpy(copy->row[y], image->row[y], num_bytes);
  return copy;
}

void im_delete(tImage* image) {
  std::free(image);
}
