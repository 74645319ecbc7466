#include "tests/endurance/memory_in_use.h"

#include <fstream>

#if defined(__GLIBC__)
#include <malloc.h>
#include <unistd.h>
#endif

namespace orvandel::test {

#if defined(__GLIBC__)

std::optional<std::uint64_t> HeapInUse() {
  const struct mallinfo2 heap = mallinfo2();
  const std::uint64_t bytes = heap.uordblks + heap.hblkhd;
  if (bytes == 0) return std::nullopt;  // a sanitizer's heap, which does not count here
  return bytes;
}

std::optional<std::uint64_t> ResidentMemory() {
  std::ifstream file("/proc/self/statm");
  std::uint64_t pages = 0;
  std::uint64_t resident = 0;
  if (!(file >> pages >> resident)) return std::nullopt;
  return resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

#else

std::optional<std::uint64_t> HeapInUse() {
  return std::nullopt;
}

std::optional<std::uint64_t> ResidentMemory() {
  return std::nullopt;
}

#endif

}  // namespace orvandel::test
