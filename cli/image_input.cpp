#include "cli/image_input.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <fmt/format.h>

#include "cli/messages.h"

namespace orvandel::cli {

ImageFile CutOut(const ImageFile& file, const Rectangle& part) {
  CheckInside(part, file.image->width, file.image->height, file.path);
  ImageFile cut_out;
  cut_out.path = file.path;
  cut_out.channels = file.channels;
  cut_out.bits_per_channel = file.bits_per_channel;
  cut_out.image = evaluation::NewImage(file.path, part.width, part.height);
  const auto file_width = static_cast<std::ptrdiff_t>(file.image->width);
  for (int y = 0; y < part.height && !file.grey16.empty(); ++y) {
    const auto from = file.grey16.begin() + (part.y + y) * file_width + part.x;
    cut_out.grey16.insert(cut_out.grey16.end(), from, from + part.width);
  }
  for (int y = 0; y < part.height; ++y)
    std::copy_n(file.image->row[part.y + y] + part.x, part.width, cut_out.image->row[y]);
  return cut_out;
}

ImageView GreyView(const ImageFile& file) {
  const tImage& image = *file.image;
  if (!file.grey16.empty()) {
    constexpr std::ptrdiff_t kBytes = sizeof(std::uint16_t);
    return ImageView16{file.grey16.data(), image.width, image.height, kBytes * image.width};
  }
  const std::ptrdiff_t stride = image.height > 1 ? image.row[1] - image.row[0] : image.width;
  return ImageView8{image.row[0], image.width, image.height, stride};
}

void NoteConversion(const ImageFile& file, Engine engine) {
  const bool keeps_all_bits = engine == Engine::kShapes && !file.grey16.empty();
  if (!file.WasConverted() || keeps_all_bits) return;
  const std::string_view kind = file.channels >= 3   ? "colour picture"
                                : file.channels == 2 ? "grey picture with transparency"
                                                     : "grey picture";
  PrintNote(fmt::format("{}: {} of {} bits a channel, converted to 8-bit grey", file.path, kind,
                        file.bits_per_channel));
}

}  // namespace orvandel::cli
