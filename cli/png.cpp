#include "cli/png.h"

#include <new>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb_image_write.h>

namespace orvandel::cli {

std::string EncodeRgbPng(std::span<const std::uint8_t> rgb, int width, int height) {
  const auto append = [](void* file, void* bytes, int size) {
    static_cast<std::string*>(file)->append(static_cast<const char*>(bytes),
                                            static_cast<std::size_t>(size));
  };
  constexpr int kChannels = 3;
  std::string file;
  if (!stbi_write_png_to_func(append, &file, width, height, kChannels, rgb.data(),
                              width * kChannels))
    throw std::bad_alloc();
  return file;
}

}  // namespace orvandel::cli
