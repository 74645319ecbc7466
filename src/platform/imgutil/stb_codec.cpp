#include "platform/imgutil/stb_codec.h"

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

#include "platform/imgutil/grey.h"

namespace {

// The most that a decoder may ask for at once. A small file can be made that inflates to any size;
// its image cannot.
thread_local std::size_t largest_allocation = 0;

// Cleared, so that pixels that a damaged file leaves undecoded are black and not what the memory
// held before.
void* Allocate(std::size_t size) {
  return size <= largest_allocation ? std::calloc(1, size) : nullptr;
}

void* Reallocate(void* old_memory, std::size_t size) {
  return size <= largest_allocation ? std::realloc(old_memory, size) : nullptr;
}

// The encoders do not look at what they are given.
void* AllocateOrThrow(std::size_t size) {
  void* memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* ReallocateOrThrow(void* old_memory, std::size_t size) {
  void* memory = std::realloc(old_memory, size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#define STBI_NO_FAILURE_STRINGS
#define STBI_MAX_DIMENSIONS 65535
#define STBI_ASSERT(condition) static_cast<void>(0)
#define STBI_MALLOC(size) Allocate(size)
#define STBI_REALLOC(memory, size) Reallocate(memory, size)
#define STBI_FREE(memory) std::free(memory)
#include <stb_image.h>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#define STBIW_ASSERT(condition) static_cast<void>(0)
#define STBIW_MALLOC(size) AllocateOrThrow(size)
#define STBIW_REALLOC(memory, size) ReallocateOrThrow(memory, size)
#define STBIW_FREE(memory) std::free(memory)
#include <stb_image_write.h>

namespace orvandel {
namespace {

constexpr int kJpegQuality = 95;

/// Up to 8 bytes a pixel, compressed to no less than twice that at worst, in buffers that grow by
/// doubling; sides rounded up to whole blocks; tables.
std::size_t LargestAllocation(const ImageFileInfo& info) {
  constexpr std::uint64_t kBytesPerPixel = 32;
  constexpr std::uint64_t kTables = 1 << 20;
  const auto padded = [](int side) { return static_cast<std::uint64_t>(side) + 32; };
  return static_cast<std::size_t>(kBytesPerPixel * padded(info.width) * padded(info.height) +
                                  kTables);
}

struct SamplesDeleter {
  void operator()(stbi_uc* samples) const { stbi_image_free(samples); }
};

void Append(void* context, void* data, int size) {
  auto& file = *static_cast<Bytes*>(context);
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  file.insert(file.end(), bytes, bytes + size);
}

bool Encode(const Bytes& pixels, int width, int height, StbFormat format, Bytes& file) {
  switch (format) {
    case StbFormat::kPng:
      return stbi_write_png_to_func(Append, &file, width, height, 1, pixels.data(), width) != 0;
    case StbFormat::kJpeg:
      return stbi_write_jpg_to_func(Append, &file, width, height, 1, pixels.data(), kJpegQuality) !=
             0;
    case StbFormat::kTga:
      return stbi_write_tga_to_func(Append, &file, width, height, 1, pixels.data()) != 0;
  }
  return false;
}

}  // namespace

ImageFileError DecodeWithStb(ByteView file, const ImageFileInfo& info, Bytes& grey) {
  if (file.size() > INT_MAX) return kImageFileTooLarge;
  int width = 0;
  int height = 0;
  int channels = 0;
  largest_allocation = LargestAllocation(info);
  const std::unique_ptr<stbi_uc, SamplesDeleter> samples(stbi_load_from_memory(
      file.data(), static_cast<int>(file.size()), &width, &height, &channels, 0));
  if (!samples || width != info.width || height != info.height) return kImageFileForeign;

  grey.resize(static_cast<std::size_t>(info.NumPixels()));
  ToGrey(samples.get(), channels, grey.size(), grey.data());
  return kImageFileOk;
}

ImageFileError EncodeWithStb(const tImage& image, StbFormat format, Bytes& file) {
  Bytes pixels;
  const std::uint64_t num_pixels =
      std::uint64_t{static_cast<unsigned>(image.width)} * static_cast<unsigned>(image.height);
  if (num_pixels > kMaxCodecBytes) return kImageFileTooLarge;
  pixels.reserve(static_cast<std::size_t>(num_pixels));
  AppendPixels(image, pixels);
  file.clear();
  return Encode(pixels, image.width, image.height, format, file) ? kImageFileOk
                                                                 : kImageFileOutOfMemory;
}

}  // namespace orvandel
