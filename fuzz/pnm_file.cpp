// PNM files, as they are.

#include "fuzz/image_file.h"
#include "fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvandel::fuzz::ReadAsImageFile(data, size, ".pnm");
  return 0;
}
