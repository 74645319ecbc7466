#include "verify/shared_array.h"

#include <cstddef>
#include <mutex>
#include <unordered_map>

namespace orvandel {
namespace {

struct Registry {
  std::mutex mutex;
  std::unordered_map<const double*, std::size_t> further_owners;  // beyond the first
};

/// Never destroyed: hosts may hold objects that outlive the library's own statics.
Registry& TheRegistry() {
  static auto* const registry = new Registry;
  return *registry;
}

void RemoveOwner(Registry& registry, const double* array) {
  const auto entry = registry.further_owners.find(array);
  if (entry != registry.further_owners.end() && --entry->second == 0) {
    registry.further_owners.erase(entry);
  }
}

}  // namespace

void ShareArrays(const std::array<double*, 3>& arrays) {
  Registry& registry = TheRegistry();
  const std::scoped_lock lock(registry.mutex);
  std::size_t done = 0;
  try {
    for (; done < arrays.size(); ++done) {
      if (arrays[done] != nullptr) ++registry.further_owners[arrays[done]];
    }
  } catch (...) {
    while (done > 0)
      RemoveOwner(registry, arrays[--done]);
    throw;
  }
}

void ReleaseArray(double* array) noexcept {
  if (array == nullptr) return;
  {
    Registry& registry = TheRegistry();
    const std::scoped_lock lock(registry.mutex);
    if (registry.further_owners.contains(array)) {
      RemoveOwner(registry, array);
      return;
    }
  }
  delete[] array;
}

}  // namespace orvandel
