#pragma once

#include <utility>
#include <vector>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVANDEL_TEST_FINDS_LEAKS 1
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define ORVANDEL_TEST_FINDS_LEAKS 1
#endif
#if defined(ORVANDEL_TEST_FINDS_LEAKS)
#include <sanitizer/lsan_interface.h>
#endif

namespace orvandel::test {

/// Makes an object that is never destroyed, as a host must where two search objects share their
/// contents. It stays reachable, so it counts as no leak.
template <typename T, typename... Arguments>
T& MakeAndKeep(Arguments&&... arguments) {
  static auto* kept = new std::vector<T*>;
  kept->push_back(new T(std::forward<Arguments>(arguments)...));
  return *kept->back();
}

/// While it lives, memory that is lost by design is not reported.
class LossByDesign {
 public:
#if defined(ORVANDEL_TEST_FINDS_LEAKS)
  LossByDesign() {
    __lsan_disable();
  }
  ~LossByDesign() {
    __lsan_enable();
  }
#else
  LossByDesign() {}
  ~LossByDesign() {}
#endif
  LossByDesign(const LossByDesign&) = delete;
  LossByDesign& operator=(const LossByDesign&) = delete;
};

}  // namespace orvandel::test
