// The program's operator new, with a count. In a file of its own, so that compilers do not see through it.

#include "tests/search/counted_allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> num_allocations{0};
std::atomic<std::size_t> largest{0};

void Count(std::size_t size) {
  ++num_allocations;
  std::size_t before = largest;
  while (before < size && !largest.compare_exchange_weak(before, size)) {
  }
}

}  // namespace

// For the whole program, so that no allocation escapes.
void* operator new(std::size_t size) {
  Count(size);
  if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return ::operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  Count(size);
  return std::malloc(size > 0 ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return ::operator new(size, tag);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace orvandel::test {

long NumAllocations() {
  return num_allocations;
}

std::size_t TakeLargestAllocation() {
  return largest.exchange(0);
}

}  // namespace orvandel::test
