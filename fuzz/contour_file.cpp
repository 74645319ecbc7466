// Contour files, byte by byte.

#include "fuzz/contour_stages.h"
#include "fuzz/files.h"
#include "fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvandel::fuzz;
  static const ScratchFolder folder;
  WriteBytes(folder.File("set.ctd"), {data, size});
  ReadAndUseContours(folder.File("set.ctd"));
  return 0;
}
