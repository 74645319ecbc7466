// BMP files, as they are.

#include "fuzz/picture_file.h"
#include "fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvandel::fuzz::ReadAsPicture(data, size, ".bmp");
  return 0;
}
