// PNG files, as they are and with the checksums of their chunks put right, which chance never does.

#include <algorithm>
#include <vector>

#include "fuzz/files.h"
#include "fuzz/image_file.h"
#include "fuzz/target.h"
#include "tests/platform/png_builder.h"

namespace orvandel::fuzz {
namespace {

constexpr std::size_t kSignatureBytes = 8;

std::size_t BigEndian32(const Bytes& file, std::size_t at) {
  std::size_t value = 0;
  for (std::size_t i = 0; i < 4; ++i)
    value = value << 8 | file[at + i];
  return value;
}

/// Goes from chunk to chunk (length, type, data, checksum) as far as the lengths lead.
void RepairChecksums(Bytes& file) {
  std::size_t at = kSignatureBytes;
  while (file.size() > at && file.size() - at >= 12) {
    const std::size_t length = BigEndian32(file, at);
    if (length > file.size() - at - 12) return;
    const auto checked = file.begin() + static_cast<std::ptrdiff_t>(at + 4);
    const auto end = checked + static_cast<std::ptrdiff_t>(4 + length);
    const Bytes checksum = test::Be32(test::ChunkChecksum(Bytes(checked, end)));
    std::copy(checksum.begin(), checksum.end(), end);
    at += 12 + length;
  }
}

}  // namespace
}  // namespace orvandel::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvandel::fuzz;
  ReadAsImageFile(data, size, ".png");
  Bytes repaired(data, data + size);
  RepairChecksums(repaired);
  ReadAsImageFile(repaired.data(), repaired.size(), ".png");
  return 0;
}
