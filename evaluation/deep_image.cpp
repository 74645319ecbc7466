#include "evaluation/deep_image.h"

#include <climits>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <memory>

#include "evaluation/paths.h"

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#define STBI_NO_FAILURE_STRINGS
#define STBI_MAX_DIMENSIONS 65535
#define STBI_ASSERT(condition) static_cast<void>(0)
#include <stb_image.h>

namespace orvandel::evaluation {
namespace {

struct SamplesDeleter {
  void operator()(stbi_us* samples) const { stbi_image_free(samples); }
};

}  // namespace

std::vector<std::uint16_t> ReadGrey16(const std::string& path, int width, int height) {
  std::ifstream stream(PathFromUtf8(path), std::ios::binary);
  const std::vector<char> file((std::istreambuf_iterator<char>(stream)),
                               std::istreambuf_iterator<char>());
  if (file.empty() || file.size() > INT_MAX) return {};
  const auto* const bytes = reinterpret_cast<const stbi_uc*>(file.data());
  const int size = static_cast<int>(file.size());
  if (!stbi_is_16_bit_from_memory(bytes, size)) return {};
  int read_width = 0;
  int read_height = 0;
  int channels = 0;
  const std::unique_ptr<stbi_us, SamplesDeleter> samples(
      stbi_load_16_from_memory(bytes, size, &read_width, &read_height, &channels, 0));
  if (!samples || read_width != width || read_height != height || channels != 1) return {};
  const std::size_t num_pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  return {samples.get(), samples.get() + num_pixels};
}

}  // namespace orvandel::evaluation
