// With glibc, the program's own malloc and its like stand before the C library's: whatever the program and its shared
// libraries allocate comes through here.

#include "bench/heap_peak.h"

#include <cstdlib>

#if defined(__GLIBC__)
#include <algorithm>

#include <malloc.h>

namespace {

bool is_watching = false;
std::ptrdiff_t in_use = 0;  // since the beginning; earlier blocks may be freed
std::ptrdiff_t most_in_use = 0;

void* Taken(void* block) {
  if (is_watching && block != nullptr) {
    in_use += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    most_in_use = std::max(most_in_use, in_use);
  }
  return block;
}

void Returned(void* block) {
  if (is_watching && block != nullptr)
    in_use -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
}

}  // namespace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) {
  return Taken(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size) {
  return Taken(__libc_calloc(count, size));
}
void* realloc(void* block, std::size_t size) {
  Returned(block);
  return Taken(__libc_realloc(block, size));
}
void free(void* block) {
  Returned(block);
  __libc_free(block);
}
}

namespace orvandel::bench {

bool HeapPeak::IsMeasured() {
  return true;
}

HeapPeak::HeapPeak() {
  in_use = most_in_use = 0;
  is_watching = true;
}

HeapPeak::~HeapPeak() {
  is_watching = false;
}

std::size_t HeapPeak::Bytes() const {
  return static_cast<std::size_t>(most_in_use);
}

}  // namespace orvandel::bench

#else

namespace orvandel::bench {

bool HeapPeak::IsMeasured() {
  return false;
}
HeapPeak::HeapPeak() = default;
HeapPeak::~HeapPeak() = default;
std::size_t HeapPeak::Bytes() const {
  return 0;
}

}  // namespace orvandel::bench

#endif
