// Every allocation of the program comes through here: it is linked with --wrap=malloc and the like.

#include "tests/memory/failing_allocations.h"

#include <atomic>
#include <limits>
#include <new>

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void __real_free(void* memory);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size);
void __wrap_free(void* memory);
}

namespace {

constexpr long kNever = std::numeric_limits<long>::max();

std::atomic<long> num_live{0};
std::atomic<long> num_asked{0};
std::atomic<long> first_failing{kNever};
std::atomic<long> last_failing{kNever};

bool MustFail() {
  const long index = num_asked++;
  return index >= first_failing && index <= last_failing;
}

void* Counted(void* memory) {
  if (memory != nullptr) ++num_live;
  return memory;
}

}  // namespace

void* __wrap_malloc(std::size_t size) {
  return MustFail() ? nullptr : Counted(__real_malloc(size));
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  return MustFail() ? nullptr : Counted(__real_calloc(count, size));
}

void* __wrap_realloc(void* memory, std::size_t size) {
  if (MustFail()) return nullptr;
  return memory != nullptr ? __real_realloc(memory, size) : Counted(__real_realloc(memory, size));
}

void __wrap_free(void* memory) {
  if (memory != nullptr) --num_live;
  __real_free(memory);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return __wrap_malloc(size > 0 ? size : 1);
}
void* operator new(std::size_t size) {
  if (void* memory = __wrap_malloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return ::operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return ::operator new(size, tag);
}
void operator delete(void* memory) noexcept {
  __wrap_free(memory);
}
void operator delete[](void* memory) noexcept {
  __wrap_free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  __wrap_free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  __wrap_free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  __wrap_free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  __wrap_free(memory);
}

namespace orvandel::test {

FailingAllocation::FailingAllocation(long index, Failure failure) {
  num_asked = 0;
  last_failing = failure == Failure::kOnce ? index : kNever;
  first_failing = index;
}

FailingAllocation::~FailingAllocation() {
  first_failing = kNever;
}

bool FailingAllocation::HasHappened() {
  return num_asked > first_failing;
}

long NumLiveBlocks() {
  return num_live;
}

}  // namespace orvandel::test
