#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "api/errors.h"

namespace orvandel::api {

/// Structs of the C interface begin with their size as the host knows them. Newer versions add
/// fields at the end: what an older host does not have, stays at its default and is not written.
template <typename Struct>
void CheckSize(const Struct& given) {
  Require(given.struct_size >= sizeof given.struct_size,
          "The struct_size of a struct is not set: it must be sizeof of the struct.");
  Require(given.struct_size <= sizeof(Struct),
          "The struct_size of a struct is larger than this version of the library knows.");
}

/// The struct of a host over the defaults; null leaves the defaults.
template <typename Struct>
Struct ReadSized(const Struct* given, Struct defaults) {
  if (given == nullptr) return defaults;
  CheckSize(*given);
  std::memcpy(&defaults, given, given->struct_size);
  defaults.struct_size = sizeof(Struct);
  return defaults;
}

/// Fills as much as the host has room for.
template <typename Struct>
void WriteSized(Struct values, Struct* to) {
  Require(to != nullptr, "The struct to fill is null.");
  CheckSize(*to);
  values.struct_size = to->struct_size;
  std::memcpy(to, &values, to->struct_size);
}

/// Sets a struct that need not be initialised yet. A size of another version is cut to what is
/// known.
template <typename Struct>
void InitSized(Struct defaults, std::size_t struct_size, Struct* to) {
  if (to == nullptr || struct_size < sizeof to->struct_size) return;
  defaults.struct_size = struct_size;
  std::memcpy(to, &defaults, std::min(struct_size, sizeof(Struct)));
}

}  // namespace orvandel::api
