#include "cli/image_input.h"

#include <algorithm>
#include <cstddef>
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
  for (int y = 0; y < part.height; ++y)
    std::copy_n(file.image->row[part.y + y] + part.x, part.width, cut_out.image->row[y]);
  return cut_out;
}

ImageView GreyView(const ImageFile& file) {
  const tImage& image = *file.image;
  const std::ptrdiff_t stride = image.height > 1 ? image.row[1] - image.row[0] : image.width;
  return ImageView8{image.row[0], image.width, image.height, stride};
}

void NoteConversion(const ImageFile& file) {
  if (!file.WasConverted()) return;
  const std::string_view kind = file.channels >= 3   ? "colour picture"
                                : file.channels == 2 ? "grey picture with transparency"
                                                     : "grey picture";
  PrintNote(fmt::format("{}: {} of {} bits a channel, converted to 8-bit grey", file.path, kind,
                        file.bits_per_channel));
}

}  // namespace orvandel::cli
