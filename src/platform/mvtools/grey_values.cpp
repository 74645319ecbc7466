#include <algorithm>
#include <array>
#include <cstring>

#include "orvandel/classic/mvtools_i.h"

void mvt_hist(const tImage* image, std::int32_t counts[256]) {
  if (counts == nullptr) return;
  std::fill_n(counts, 256, 0);
  if (image == nullptr) return;

  std::array<std::uint32_t, 256> tally{};
  for (int y = 0; y < image->height; ++y) {
    const std::uint8_t* row = image->row[y];
    for (int x = 0; x < image->width; ++x)
      ++tally[row[x]];
  }
  std::transform(tally.begin(), tally.end(), counts,
                 [](std::uint32_t count) { return static_cast<std::int32_t>(count); });
}

void mvt_constant(tImage* image, int value) {
  if (image == nullptr || image->width < 1) return;
  const auto num_bytes = static_cast<std::size_t>(image->width);
  for (int y = 0; y < image->height; ++y)
    std::memset(image->row[y], value, num_bytes);
}

void mvt_put_bpixel(tImage* image, int x, int y, int value) {
  if (image == nullptr) return;
  const bool inside = x >= 0 && x < image->width && y >= 0 && y < image->height;
  if (inside) image->row[y][x] = static_cast<std::uint8_t>(value);
}
